#include "exchange/Names.h"

#include <iterator>

namespace sim {

namespace {

struct Syllables {
    const char *text; ///< UTF-8
    const char *letters;
};

// Characters that are rare in company names, so that a pair is unlikely to be a real name.
constexpr Syllables kStems[] = {
    {"岚", "L"}, {"澜", "L"}, {"霁", "J"}, {"璟", "J"}, {"峦", "L"}, {"榆", "Y"}, {"渚", "Z"}, {"鹭", "L"}, {"漪", "Y"},
    {"珩", "H"}, {"沐", "M"}, {"雁", "Y"}, {"枫", "F"}, {"溪", "X"}, {"岭", "L"}, {"禾", "H"}, {"晏", "Y"}, {"筠", "Y"},
    {"荻", "D"}, {"砚", "Y"}, {"黛", "D"}, {"菡", "H"}, {"蓼", "L"}, {"曦", "X"}, {"柘", "Z"}, {"棠", "T"},
};

constexpr Syllables kBusinesses[] = {
    {"重工", "ZG"}, {"云商", "YS"}, {"光电", "GD"}, {"银行", "YH"}, {"生物", "SW"}, {"药业", "YY"},
    {"股份", "GF"}, {"科技", "KJ"}, {"能源", "NY"}, {"电子", "DZ"}, {"食品", "SP"}, {"材料", "CL"},
    {"证券", "ZQ"}, {"物流", "WL"}, {"传媒", "CM"}, {"环境", "HJ"}, {"机械", "JX"}, {"软件", "RJ"},
    {"置业", "ZY"}, {"航运", "HY"}, {"纺织", "FZ"}, {"化工", "HG"}, {"水务", "SW"}, {"建设", "JS"},
};

constexpr Syllables kThemes[] = {
    {"红利", "HL"}, {"成长", "CZ"}, {"价值", "JZ"}, {"消费", "XF"}, {"医药", "YY"}, {"芯片", "XP"},
    {"能源", "NY"}, {"基建", "JJ"}, {"军工", "JG"}, {"农业", "NY"}, {"传媒", "CM"}, {"低波", "DB"},
};

SpelledName spelled(const Syllables &syllables)
{
    return {QString::fromUtf8(syllables.text), QString::fromLatin1(syllables.letters)};
}

template <size_t size>
SpelledName oneOf(const Syllables (&list)[size], random::Sequence &chance)
{
    return spelled(list[chance.whole(0, qint64(size) - 1)]);
}

} // namespace

SpelledName madeUpStem(random::Sequence &chance)
{
    constexpr qint64 count = qint64(std::size(kStems));
    const qint64 first = chance.whole(0, count - 1);
    const qint64 second = (first + chance.whole(1, count - 1)) % count;
    return spelled(kStems[first]) + spelled(kStems[second]);
}

SpelledName madeUpBusiness(random::Sequence &chance)
{
    return oneOf(kBusinesses, chance);
}

SpelledName madeUpTheme(random::Sequence &chance)
{
    return oneOf(kThemes, chance);
}

} // namespace sim
