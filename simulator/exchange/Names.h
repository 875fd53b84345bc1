#pragma once

#include "exchange/Random.h"

namespace sim {

/// A made-up name and the first letters of its pinyin.
struct SpelledName {
    QString name;
    QString spellCode;

    SpelledName operator+(const SpelledName &behind) const
    {
        return {name + behind.name, spellCode + behind.spellCode};
    }
};

/// The first two syllables of the name of a company or fund: one of hundreds of pairs of different syllables.
SpelledName madeUpStem(random::Sequence &chance);

/// The business of a company, two syllables.
SpelledName madeUpBusiness(random::Sequence &chance);

/// The investments of a fund, two syllables.
SpelledName madeUpTheme(random::Sequence &chance);

} // namespace sim
