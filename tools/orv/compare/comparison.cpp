#include "compare/comparison.h"

#include "compare/comparison_numbers.h"
#include "compare/comparison_page.h"
#include "compare/comparison_sheet.h"
#include "files/output_file.h"
#include "files/path_names.h"
#include "methods/suggestion.h"

namespace orv::cli {

namespace {

bool endsIn(std::string_view path, std::string_view ending) {
    return path.size() > ending.size() &&
           sameWord(path.substr(path.size() - ending.size()), ending);
}

}  // namespace

std::string Comparison::beforeName() const {
    const std::string name = fileNameOf(facts.beforePath);
    return name == fileNameOf(facts.afterPath) ? facts.beforePath : name;
}

std::string Comparison::afterName() const {
    const std::string name = fileNameOf(facts.afterPath);
    return name == fileNameOf(facts.beforePath) ? facts.afterPath : name;
}

ComparisonFormat comparisonFormatOf(std::string_view path) {
    if (endsIn(path, ".html") || endsIn(path, ".htm")) {
        return {ComparisonForm::Page, nullptr, {}};
    }
    if (endsIn(path, ".json")) {
        return {ComparisonForm::Numbers, nullptr, {}};
    }
    const FormatEntry* const picture = formatOfName(path);
    if (picture == nullptr) {
        return {};
    }
    return {ComparisonForm::Sheet, picture, std::string(path.substr(path.find_last_of('.')))};
}

std::string comparisonExtensions() {
    return ".html .json " + writableExtensions();
}

std::string comparisonRefusal(const std::string& path) {
    const ComparisonFormat format = comparisonFormatOf(path);
    if (format.form == ComparisonForm::Unknown) {
        return endingRefusal(path, "comparison", comparisonExtensions());
    }
    if (format.form == ComparisonForm::Sheet) {
        // A sheet is a picture in colour of 8 bits without alpha.
        return writeRefusal(path, {format.picture, format.ending}, Picture{});
    }
    return {};
}

std::string writeComparison(const Comparison& comparison, const std::string& temporaryPath,
                            const ComparisonFormat& format) {
    if (format.form == ComparisonForm::Sheet) {
        Picture sheet = comparisonSheet(comparison);
        WriteSettings settings{format.picture, format.ending};
        settings.strip = Strip::All;
        return writePicture(temporaryPath, settings, sheet);
    }
    if (format.form == ComparisonForm::Page) {
        std::string page;
        const std::string error = comparisonPage(comparison, page);
        return error.empty() ? writeText(temporaryPath, page) : error;
    }
    return writeText(temporaryPath, comparisonJson(comparison));
}

}  // namespace orv::cli
