#include "tune/tune_crop.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

namespace orv::cli {

namespace {

constexpr int kLongest = 1000000;

/// Reads whole numbers with one mark between each two of them; false for anything else.
template <std::size_t count>
bool readNumbers(std::string_view text, std::string_view marks,
                 std::array<int, count>& numbers) {
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0 && (at == end || *at++ != marks[i - 1])) {
            return false;
        }
        const auto [stop, failed] = std::from_chars(at, end, numbers[i]);
        if (failed != std::errc() || numbers[i] < 0 || numbers[i] > kLongest) {
            return false;
        }
        at = stop;
    }
    return at == end;
}

/// Sums of the detail in squares of `kStep` samples a side, column after column.
constexpr int kStep = 16;

std::vector<double> detailSums(const Planes& planes, int across, int down) {
    std::vector<double> sums(static_cast<std::size_t>(across) * static_cast<std::size_t>(down));
    for (const auto& plane : planes) {
        for (int x = 0; x + 1 < plane->width(); ++x) {
            const float* const column = plane->row(x);
            const float* const next = plane->row(x + 1);
            double* const to =
                &sums[static_cast<std::size_t>(x / kStep) * static_cast<std::size_t>(down)];
            for (int y = 0; y + 1 < plane->height(); ++y) {
                to[y / kStep] +=
                    std::abs(next[y] - column[y]) + std::abs(column[y + 1] - column[y]);
            }
        }
    }
    return sums;
}

/// The corner of the most detailed part, on the grid of squares or at the far borders.
void placeByDetail(const Planes& planes, CropPlace& place) {
    const int across = (planes[0]->width() + kStep - 1) / kStep;
    const int down = (planes[0]->height() + kStep - 1) / kStep;
    const std::vector<double> sums = detailSums(planes, across, down);
    const int wide = std::max(1, place.width / kStep);
    const int high = std::max(1, place.height / kStep);
    double largest = -1.0;
    for (int i = 0; i + wide <= across; ++i) {
        for (int j = 0; j + high <= down; ++j) {
            double sum = 0.0;
            for (int k = i; k < i + wide; ++k) {
                const auto from = static_cast<std::size_t>(k) * static_cast<std::size_t>(down) +
                                  static_cast<std::size_t>(j);
                for (std::size_t l = from; l < from + static_cast<std::size_t>(high); ++l) {
                    sum += sums[l];
                }
            }
            if (sum > largest) {
                largest = sum;
                place.x = std::min(i * kStep, planes[0]->width() - place.width);
                place.y = std::min(j * kStep, planes[0]->height() - place.height);
            }
        }
    }
}

}  // namespace

std::string readCrop(std::string_view text, CropOrder& order) {
    std::array<int, 4> four{};
    std::array<int, 2> two{};
    if (readNumbers(text, "x++", four) && four[0] > 0 && four[1] > 0) {
        order = {four[0], four[1], true, false, four[2], four[3]};
        return {};
    }
    if (readNumbers(text, "x", two) && two[0] > 0 && two[1] > 0) {
        order = {two[0], two[1]};
        return {};
    }
    return "--crop: '" + std::string(text) +
           "' is no part of a picture (expected WIDTHxHEIGHT or WIDTHxHEIGHT+X+Y)";
}

std::string readAt(std::string_view text, CropOrder& order) {
    std::array<int, 2> two{};
    if (!readNumbers(text, ",", two)) {
        return "--at: '" + std::string(text) + "' is no place (expected X,Y in pixels)";
    }
    if (order.placed) {
        return "--at: --crop tells a place already; leave out one of them";
    }
    order.placed = true;
    order.centred = true;
    order.x = two[0];
    order.y = two[1];
    return {};
}

std::string placeCrop(const CropOrder& order, const Planes& planes, CropPlace& place) {
    const int width = planes[0]->width();
    const int height = planes[0]->height();
    place = {0, 0, std::min(order.width, width), std::min(order.height, height)};
    if (order.placed && (order.x >= width || order.y >= height)) {
        return std::string(order.centred ? "--at" : "--crop") + ": (" +
               std::to_string(order.x) + ", " + std::to_string(order.y) +
               ") lies outside the picture, which has " + std::to_string(width) + " x " +
               std::to_string(height) + " pixels";
    }
    if (!order.placed) {
        placeByDetail(planes, place);
        return {};
    }
    const int x = order.x - (order.centred ? place.width / 2 : 0);
    const int y = order.y - (order.centred ? place.height / 2 : 0);
    place.x = std::clamp(x, 0, width - place.width);
    place.y = std::clamp(y, 0, height - place.height);
    return {};
}

CropPlace withMargin(const CropPlace& place, int margin, int width, int height) {
    const int left = std::max(0, place.x - margin);
    const int top = std::max(0, place.y - margin);
    return {left, top, std::min(width, place.x + place.width + margin) - left,
            std::min(height, place.y + place.height + margin) - top};
}

}  // namespace orv::cli
