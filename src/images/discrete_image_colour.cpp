#include <array>

#include "base/rounding.h"
#include "images/discrete_image.h"

namespace orv {

namespace {

constexpr double kFullScale = 255.0;
constexpr double kThirdScale = 85.0;
// Stands in for a luminance of 0, by which the components could not be divided.
constexpr double kLeastLuminance = 0.00001;

struct Rgb {
    double r;
    double g;
    double b;
};

/// The colour of full brightness of a hue (radians) at a saturation, sector by sector.
Rgb hueColour(double hue, double saturation, double pi) {
    constexpr double a = kFullScale;
    constexpr double c = kThirdScale;
    const double t = 2.0 * pi / 3.0;
    if (hue <= t) {
        return {saturation * (a * (t - hue) / t - c) + c, saturation * (a * hue / t - c) + c,
                (1.0 - saturation) * c};
    }
    if (hue <= 2.0 * t) {
        return {(1.0 - saturation) * c, saturation * (a * (2.0 * t - hue) / t - c) + c,
                saturation * (a * (hue - t) / t - c) + c};
    }
    // quirk: hsi-third-sector
    const double blue = c - saturation * (a * (2.0 * pi - hue) / t - c);
    return {saturation * (a * (hue - 2.0 * t) / t - c) + c, (1.0 - saturation) * c, blue};
}

/// Draws a component above the full scale toward the intensity.
double drawnToIntensity(double component, double intensity) {
    if (!(component > kFullScale)) {
        return component;
    }
    double s = (kFullScale - intensity) / (component - intensity);
    if (s > 1.0) {
        s = 1.0;
    }
    return (1.0 - s) * intensity + s * component;
}

double clamped(double component) {
    if (component < 0.0) {
        return 0.0;
    }
    return component > kFullScale ? kFullScale : component;
}

}  // namespace

void DiscreteImage::setRedScaled(int x, int y, int sx, int sy, int v) {
    setRed(x * sx, y * sy, v);
}

void DiscreteImage::setGreenScaled(int x, int y, int sx, int sy, int v) {
    setGreen(x * sx, y * sy, v);
}

void DiscreteImage::setBlueScaled(int x, int y, int sx, int sy, int v) {
    setBlue(x * sx, y * sy, v);
}

void DiscreteImage::setValueScaled(int x, int y, int sx, int sy, int v) {
    setValue(x * sx, y * sy, v);
}

void DiscreteImage::setChannel(int c, int x, int y, int v) {
    switch (c) {
        case 1:
            setGreen(x, y, v);
            return;
        case 2:
            setBlue(x, y, v);
            return;
        default:
            setRed(x, y, v);
            return;
    }
}

int DiscreteImage::redScaled(int x, int y, int sx, int sy) const {
    // quirk: scaled-reads
    return value(x * sx, y * sy);
}

int DiscreteImage::greenScaled(int x, int y, int sx, int sy) const {
    // quirk: scaled-reads
    return value(x * sx, y * sy);
}

int DiscreteImage::blueScaled(int x, int y, int sx, int sy) const {
    // quirk: scaled-reads
    return value(x * sx, y * sy);
}

int DiscreteImage::valueScaled(int x, int y, int sx, int sy) const {
    return value(x * sx, y * sy);
}

int DiscreteImage::getChannel(int c, int x, int y) const {
    switch (c) {
        case 1:
            return green(x, y);
        case 2:
            return blue(x, y);
        default:
            return red(x, y);
    }
}

int DiscreteImage::grey(int x, int y) const {
    return value(x, y);
}

void DiscreteImage::replaceRgbByRgb(int r, int g, int b, int r2, int g2, int b2) {
    for (int x = 0; x < width(); ++x) {
        for (int y = 0; y < height(); ++y) {
            if (channels() == 1 && value(x, y) == r) {
                setPacked(x, y, r2);
            } else if (channels() == 3 && red(x, y) == r && green(x, y) == g &&
                       blue(x, y) == b) {
                setRgb(x, y, r2, g2, b2);
            }
        }
    }
}

void DiscreteImage::replaceRgbByValue(int r, int g, int b, int v) {
    for (int x = 0; x < width(); ++x) {
        for (int y = 0; y < height(); ++y) {
            if (channels() == 1 && value(x, y) == r) {
                setPacked(x, y, v);
            } else if (channels() == 3 && red(x, y) == r && green(x, y) == g &&
                       blue(x, y) == b) {
                setValue(x, y, v);
            }
        }
    }
}

void DiscreteImage::replaceValueByValue(int v, int v2) {
    replaceRgbByValue(v, v, v, v2);
}

void DiscreteImage::setHsi(int x, int y, double intensity, double hue, double saturation) {
    const Rgb colour = hueColour(hue, saturation, pi());
    double luminance = 0.587 * colour.g + 0.299 * colour.r + 0.114 * colour.b;
    if (luminance == 0.0) {
        luminance = kLeastLuminance;
    }

    std::array<double, 3> components = {intensity * colour.r / luminance,
                                        intensity * colour.g / luminance,
                                        intensity * colour.b / luminance};
    for (double& component : components) {
        if (component < 0.0) {
            component = 0.0;
        }
    }
    for (double& component : components) {
        component = drawnToIntensity(component, intensity);
    }

    setRed(x, y, toInt(components[0]));
    setGreen(x, y, toInt(components[1]));
    setBlue(x, y, toInt(components[2]));
}

void DiscreteImage::setYiq(int x, int y, double luma, double i, double q) {
    const double r = 0.956 * i + 0.621 * q + luma;
    const double g = luma - 0.273 * i - 0.647 * q;
    const double b = luma - 1.104 * i + 1.701 * q;
    setRed(x, y, toInt(clamped(r)));
    setGreen(x, y, toInt(clamped(g)));
    setBlue(x, y, toInt(clamped(b)));
}

}  // namespace orv
