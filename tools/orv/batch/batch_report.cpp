#include "batch/batch_report.h"

#include <array>
#include <filesystem>
#include <map>
#include <utility>
#include <vector>

#include "batch/batch_summary.h"
#include "batch/thumbnail_set.h"
#include "compare/comparison_page.h"
#include "files/output_file.h"
#include "system/file_system.h"
#include "system/standard_path.h"
#include "terminal/messages.h"
#include "terminal/utf8_text.h"

namespace orv::cli {

namespace {

using Thumbnails = std::map<std::size_t, ThumbnailPair>;

/// Writes the parts of a page about one batch.
class ReportWriter {
  public:
    ReportWriter(const BatchOrder& order, const BatchPlan& plan, Thumbnails thumbnails)
        : plan_(plan),
          thumbnails_(std::move(thumbnails)),
          place_(standardPath(realPlace(order.report)).parent_path()) {}

    std::string tiles(double seconds) const {
        std::string text;
        const auto tile = [&text](const std::string& name, const std::string& value,
                                  bool bad = false) {
            text += std::string("<li") + (bad ? " class=\"bad\"" : "") + "><span>" + name +
                    "</span> <strong>" + value + "</strong></li>\n";
        };
        const int failed = plan_.count(BatchStatus::Failed);
        tile("Pictures", std::to_string(plan_.files.size()));
        tile("Done", std::to_string(plan_.count(BatchStatus::Done)));
        tile("Done before", std::to_string(plan_.count(BatchStatus::Skipped)));
        tile("Failed", std::to_string(failed), failed > 0);
        tile("Time", htmlText(durationText(seconds)));
        return text;
    }

    std::string failures() const {
        std::string rows;
        for (const BatchFile& file : plan_.files) {
            if (file.status == BatchStatus::Failed) {
                rows += "<li>" + link(file.input, file.input) + "<span>" +
                        htmlText(file.reason) + "</span></li>\n";
            }
        }
        return rows.empty() ? rows
                            : "<section class=\"failures\" aria-labelledby=\"failed\">\n"
                              "<h2 id=\"failed\">Failed</h2>\n<ul>\n" +
                                  rows + "</ul>\n</section>\n";
    }

    std::string pictures() const {
        std::string text;
        for (std::size_t i = 0; i < plan_.files.size(); ++i) {
            const BatchFile& file = plan_.files[i];
            if (file.status == BatchStatus::Done || file.status == BatchStatus::Skipped) {
                text += picture(i, file);
            }
        }
        if (text.empty()) {
            return "<p class=\"soft\">No picture was done.</p>\n";
        }
        text = "<ol class=\"pictures\">\n" + text + "</ol>\n";
        const std::size_t results = static_cast<std::size_t>(plan_.count(BatchStatus::Done) +
                                                             plan_.count(BatchStatus::Skipped));
        if (results > kMostThumbnails) {
            text += "<p class=\"soft\">The first " + std::to_string(kMostThumbnails) +
                    " pictures have previews; the others have links alone.</p>\n";
        }
        return text;
    }

  private:
    std::string picture(std::size_t number, const BatchFile& file) const {
        std::string text = "<li>";
        const auto found = thumbnails_.find(number);
        if (found != thumbnails_.end()) {
            text += "<div class=\"pair\">" + image(file.input, found->second.before, "before") +
                    image(file.output, found->second.after, "after") + "</div>";
        }
        text += "<div class=\"facts\">" + link(file.output, file.output) + "<p>";
        text += file.status == BatchStatus::Skipped ? "done before"
                                                    : "in " + durationText(file.seconds);
        text += ", " + sizeText(file.stamp.bytes) + " &rarr; " + sizeText(file.bytes) + ", " +
                "<a href=\"" + address(file.recipe) + "\">recipe</a></p>";
        for (const std::string& warning : file.warnings) {
            text += "<p class=\"warning\">" + htmlText(warning) + "</p>";
        }
        return text + "</div></li>\n";
    }

    std::string image(const std::string& path, const std::vector<unsigned char>& jpeg,
                      const std::string& what) const {
        std::string text = "<a href=\"" + address(path) + "\">";
        text += jpeg.empty() ? "<span class=\"none\">no preview</span>"
                             : "<img loading=\"lazy\" alt=\"" + what +
                                   "\" src=\"data:image/jpeg;base64," +
                                   base64(jpeg.data(), jpeg.size()) + "\">";
        return text + "<span>" + what + "</span></a>";
    }

    std::string address(const std::string& path) const {
        const std::filesystem::path there = standardPath(realPlace(path));
        return htmlText(linkText(pathText(there.lexically_proximate(place_))));
    }

    std::string link(const std::string& path, const std::string& shown) const {
        return "<a class=\"name\" href=\"" + address(path) + "\">" + htmlText(shown) + "</a>";
    }

    const BatchPlan& plan_;
    Thumbnails thumbnails_;
    std::filesystem::path place_;
};

/// Those that have a result, as far as the page shows them.
std::vector<std::size_t> shownPictures(const BatchPlan& plan) {
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < plan.files.size() && shown.size() < kMostThumbnails; ++i) {
        const BatchStatus status = plan.files[i].status;
        if (status == BatchStatus::Done || status == BatchStatus::Skipped) {
            shown.push_back(i);
        }
    }
    return shown;
}

std::string pageOf(const BatchOrder& order, const BatchPlan& plan, double seconds,
                   Thumbnails thumbnails) {
    const ReportWriter writer(order, plan, std::move(thumbnails));
    const std::string title = "batch " + order.verb + ": " + countsText(plan);
    const std::array<std::pair<std::string_view, std::string>, 7> parts{{
        {"@ORV_BATCH_TITLE@", htmlText(title)},
        {"@ORV_BATCH_VERB@", htmlText(order.verb)},
        {"@ORV_BATCH_COMMAND@", htmlText(order.command)},
        {"@ORV_BATCH_TILES@", writer.tiles(seconds)},
        {"@ORV_BATCH_FAILURES@", writer.failures()},
        {"@ORV_BATCH_PICTURES@", writer.pictures()},
        {"@ORV_BATCH_PROGRAM@", "orv " ORV_VERSION},
    }};
    // The marks stand in this order, each once; what a part holds isn't searched.
    std::string_view rest = batchReportTemplate();
    std::string page;
    for (const auto& [mark, text] : parts) {
        const std::size_t at = rest.find(mark);
        page += rest.substr(0, at);
        page += text;
        rest.remove_prefix(at + mark.size());
    }
    return page += rest;
}

}  // namespace

std::string htmlText(std::string_view text) {
    std::string result;
    for (const char c : cleanUtf8(printable(text))) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            case '\'':
                result += "&#39;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

std::string linkText(std::string_view path) {
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (kPlain.find(c) != std::string_view::npos) {
            result += c;
        } else {
            result += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
        }
    }
    return result;
}

std::string reportRefusal(const BatchOrder& order) {
    if (order.report.empty() || order.force || order.resume || !leadsSomewhere(order.report)) {
        return {};
    }
    return order.report + ": exists already; --force overwrites it";
}

std::string writeBatchReport(const BatchOrder& order, const BatchPlan& plan, double seconds,
                             const StopSignal& stop) {
    Thumbnails thumbnails = makeThumbnails(plan, shownPictures(plan), order.jobs, stop);
    if (stop.received() != 0) {
        return {};
    }
    OutputFile file;
    std::string error = file.open(order.report, /*overwrite=*/true);
    if (!error.empty()) {
        return error;
    }
    const std::string page = pageOf(order, plan, seconds, std::move(thumbnails));
    error = writeText(file.temporaryPath(), page);
    return error.empty() ? file.commit() : order.report + ": can't be written: " + error;
}

}  // namespace orv::cli
