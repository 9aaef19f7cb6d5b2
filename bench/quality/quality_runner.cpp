#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "methods/automatic.h"
#include "methods/method_catalogue.h"

// quality_runner PAIRS < SETTINGS: how close methods bring noisy pictures to clean ones.
//
// PAIRS is a file with a line for each picture: the clean one, the noisy one and, if the result
// is to be kept, its name; binary PGM or PPM of 8 bits. SETTINGS are lines such as
// "restore --tau 2 --steps 4" or "wavelet --auto" or "denoise --strength 20", or several with " , " between. For each a
// line is printed: the mean PSNR, the seconds of the processor, the PSNR of each picture, and for automatic
// settings what was chosen for the last picture. scripts/measure_quality.py drives it.

namespace {

using orv::FloatImage;
using orv::Planes;

struct Pair {
    Planes clean;
    Planes noisy;
    std::string result;
};

[[noreturn]] void stop(const std::string& what) {
    std::fprintf(stderr, "quality_runner: %s\n", what.c_str());
    std::exit(1);
}

Planes readPicture(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string magic;
    int width = 0;
    int height = 0;
    int white = 0;
    file >> magic >> width >> height >> white;
    file.get();
    const int channels = magic == "P6" ? 3 : 1;
    std::vector<char> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                            static_cast<std::size_t>(channels));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file || white != 255) {
        stop(path + ": not a picture of 8 bits");
    }
    Planes planes;
    for (int c = 0; c < channels; ++c) {
        auto plane = std::make_unique<FloatImage>(width, height);
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                const auto at = static_cast<std::size_t>((y * width + x) * channels + c);
                plane->row(x)[y] = static_cast<unsigned char>(bytes[at]);
            }
        }
        planes.push_back(std::move(plane));
    }
    return planes;
}

/// Samples as a file of 8 bits has them.
int rounded(float sample) {
    return static_cast<int>(std::floor(std::clamp(sample, 0.0f, 255.0f) + 0.5f));
}

void writePicture(const std::string& path, const Planes& planes) {
    const int width = planes[0]->width();
    const int height = planes[0]->height();
    std::ofstream file(path, std::ios::binary);
    file << (planes.size() == 3 ? "P6\n" : "P5\n") << width << " " << height << "\n255\n";
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (const auto& plane : planes) {
                file.put(static_cast<char>(rounded(plane->row(x)[y])));
            }
        }
    }
}

double psnr(const Planes& clean, const Planes& result) {
    double squares = 0.0;
    std::size_t count = 0;
    for (std::size_t c = 0; c < clean.size(); ++c) {
        for (std::size_t i = 0; i < clean[c]->sampleCount(); ++i) {
            const double difference = clean[c]->data()[i] - rounded(result[c]->data()[i]);
            squares += difference * difference;
        }
        count += clean[c]->sampleCount();
    }
    return squares == 0.0 ? 99.0
                          : 10.0 * std::log10(65025.0 * static_cast<double>(count) / squares);
}

Planes copyOf(const Planes& planes) {
    Planes copies;
    for (const auto& plane : planes) {
        copies.push_back(plane->clone());
    }
    return copies;
}

/// A line of SETTINGS.
struct Setting {
    const orv::Method* method = nullptr;
    std::vector<std::pair<std::string, std::string>> values;
    bool automatic = false;
    std::optional<double> strength;
};

Setting settingOf(const std::string& line) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    Setting setting;
    setting.method = orv::findMethod(word);
    if (setting.method == nullptr) {
        stop("no method " + word);
    }
    while (words >> word) {
        const std::string name = word.substr(2);
        if (name == "auto") {
            setting.automatic = true;
        } else if (name == "strength") {
            setting.automatic = true;
            words >> word;
            setting.strength = std::stod(word);
        } else if (name == "substeps") {
            setting.values.emplace_back(name, "on");
        } else {
            words >> word;
            setting.values.emplace_back(name, word);
        }
    }
    return setting;
}

/// Runs a setting on planes and adds what automation chose to `chosen`.
Planes runOne(const Setting& setting, Planes planes, std::string& chosen) {
    orv::Arguments arguments(setting.method->parameters);
    for (const auto& [name, text] : setting.values) {
        const std::string error = arguments.set(name, text);
        if (!error.empty()) {
            stop(error);
        }
    }
    if (setting.automatic) {
        orv::chooseAutomatically(*setting.method, planes, setting.strength, arguments);
        chosen += arguments.commandText();
    }
    orv::MethodResult result = setting.method->run(std::move(planes), arguments, nullptr);
    if (!result.error.empty()) {
        stop(std::string(setting.method->name) + ": " + result.error);
    }
    return std::move(result.planes);
}

std::vector<Setting> chainOf(const std::string& line) {
    std::vector<Setting> chain;
    std::size_t from = 0;
    while (from < line.size()) {
        const std::size_t comma = std::min(line.find(" , ", from), line.size());
        chain.push_back(settingOf(line.substr(from, comma - from)));
        from = comma + 3;
    }
    return chain;
}

void runSetting(const std::string& line, const std::vector<Pair>& pairs) {
    const std::vector<Setting> chain = chainOf(line);
    std::string figures;
    std::string chosen;
    double sum = 0.0;
    double seconds = 0.0;
    for (const Pair& pair : pairs) {
        Planes planes = copyOf(pair.noisy);
        chosen.clear();
        const std::clock_t start = std::clock();
        for (const Setting& setting : chain) {
            planes = runOne(setting, std::move(planes), chosen);
        }
        seconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        const double figure = psnr(pair.clean, planes);
        sum += figure;
        char text[32];
        std::snprintf(text, sizeof text, " %.2f", figure);
        figures += text;
        if (!pair.result.empty()) {
            writePicture(pair.result, planes);
        }
    }
    std::printf("%.3f %.3f%s ;%s\n", sum / static_cast<double>(pairs.size()), seconds,
                figures.c_str(), chosen.c_str());
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        stop("takes a file of pairs");
    }
    std::vector<Pair> pairs;
    std::ifstream list(argv[1]);
    for (std::string line; std::getline(list, line);) {
        std::istringstream words(line);
        std::string clean;
        std::string noisy;
        std::string result;
        words >> clean >> noisy >> result;
        pairs.push_back({readPicture(clean), readPicture(noisy), result});
    }
    if (pairs.empty()) {
        stop(std::string(argv[1]) + ": no pairs");
    }
    char line[1024];
    while (std::fgets(line, sizeof line, stdin) != nullptr) {
        if (line[0] != '\n') {
            runSetting(line, pairs);
        }
    }
    return 0;
}
