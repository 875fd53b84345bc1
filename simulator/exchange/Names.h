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

/// The two syllables with which the name of a company or fund begins: hundreds of pairs, no two alike.
SpelledName madeUpStem(random::Sequence &chance);

/// What a company does, two syllables.
SpelledName madeUpBusiness(random::Sequence &chance);

/// What a fund invests in, two syllables.
SpelledName madeUpTheme(random::Sequence &chance);

} // namespace sim
