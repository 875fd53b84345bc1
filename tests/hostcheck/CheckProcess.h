#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// One run of a host's check.
struct CheckRun {
    using Names = std::vector<std::string>;

    int exitStatus = -1;
    std::string output;
    std::string errors; ///< what it has printed on standard error

    /// The word of each check that has a line: "ok", "FAILED", "CRASHED", "TIMED OUT" or "skipped".
    std::map<std::string, std::string> words() const;

    /// Of one check; empty when it has no line.
    std::string word(const std::string &check) const;

    /// The checks that have a line, sorted.
    Names checks() const;

    /// Those with one of these words.
    Names checksThat(std::initializer_list<std::string> words) const;

    /// Those that failed, crashed or timed out.
    Names broken() const { return checksThat({"FAILED", "CRASHED", "TIMED OUT"}); }

    /// The lines of one check.
    std::string entry(const std::string &check) const;

    bool prints(const std::string &text) const { return output.find(text) != std::string::npos; }
};

/// Runs the sample host's check. arguments: separated by blanks. fault: of the sample host; empty for none.
CheckRun runSample(const std::string &arguments, const std::string &fault = "");

/// Runs another program.
CheckRun runProgram(const std::string &program, const std::string &arguments, const std::string &fault = "");
