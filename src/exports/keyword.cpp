#include "exports/keyword.h"

#include <cstring>
#include <iterator>

#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr Keyword kSchemeKeywords[] = {
    {"2DSemi", kScheme2DSemi}, {"2DImplicit", kScheme2DImplicit},
    {"LOD", kSchemeLod},       {"AFI", kSchemeAfi},
    {"ADI", kSchemeAdi},       {"AOS", kSchemeAos},
    {"AMOS", kSchemeAmos},
};

constexpr Keyword kFlowKeywords[] = {
    {"PM", kFlowPeronaMalik},    {"WE2", kFlowWeickert2}, {"WE3", kFlowWeickert3},
    {"WE4", kFlowWeickert4},     {"WE", kFlowWeickert},   {"VAR", kFlowVariational},
    {"TV", kFlowTotalVariation},
};

constexpr Keyword kShrinkageKeywords[] = {
    {"SureShrink", 0}, {"VisuShrink", 1}, {"Brownian", 2}};

}  // namespace

int findKeyword(const char* text, const Keyword* table, int count, int fallback) {
    for (int i = 0; i < count; ++i) {
        if (std::strstr(text, table[i].literal) != nullptr) {
            return table[i].number;
        }
    }
    return fallback;
}

int schemeNumber(const char* text) {
    return findKeyword(text, kSchemeKeywords, static_cast<int>(std::size(kSchemeKeywords)),
                       kSchemeAos);
}

int restorationFlowNumber(const char* text) {
    return findKeyword(text, kFlowKeywords, static_cast<int>(std::size(kFlowKeywords)),
                       kFlowPeronaMalik);
}

int denoiserFlowNumber(const char* text) {
    return findKeyword(text, kFlowKeywords, static_cast<int>(std::size(kFlowKeywords)),
                       kFlowVariational);
}

int shrinkageNumber(const char* text) {
    return findKeyword(text, kShrinkageKeywords,
                       static_cast<int>(std::size(kShrinkageKeywords)), 0);
}

}  // namespace orv
