#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Runs a fuzz target on saved inputs where no fuzzer is linked: every file that is named, and every file of every
// folder that is named.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size);

namespace {

bool play(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream) {
        std::fprintf(stderr, "cannot read %s\n", file.string().c_str());
        return false;
    }
    std::printf("%s\n", file.string().c_str());
    std::fflush(stdout); // the last name is the one of the input that ended the process
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    int played = 0;
    for (int argument = 1; argument < argc; ++argument) {
        std::vector<std::filesystem::path> files{argv[argument]};
        if (std::filesystem::is_directory(files.front()))
            files.assign(std::filesystem::directory_iterator(files.front()), {});
        for (const std::filesystem::path &file : files) {
            if (!play(file))
                return 1;
            ++played;
        }
    }
    std::printf("%d inputs played\n", played);
    return played > 0 ? 0 : 1;
}
