#pragma once

namespace orv {

/// A literal and the number that it stands for.
struct Keyword {
    const char* literal;
    int number;
};

/// The number of the first literal of a table, in the order of the table, that occurs anywhere
/// in a text; `fallback` when none does.
///
/// So a text that holds several keywords means the one that the table names first: "AMOS" is
/// found in "AMOS", but "AOSAMOS" means "AOS".
int findKeyword(const char* text, const Keyword* table, int count, int fallback);

/// The scheme number of a scheme keyword, AOS when none is found.
int schemeNumber(const char* text);

/// The flow number of a flow keyword as `ORVFastRestoration` takes it: Perona and Malik's when
/// none is found.
int restorationFlowNumber(const char* text);

/// The flow number of a flow keyword as `ORVFastDenoiser` takes it: the variational flow when
/// none is found.
int denoiserFlowNumber(const char* text);

/// The rule number of a shrinkage keyword, that of "SureShrink" when none is found.
int shrinkageNumber(const char* text);

}  // namespace orv
