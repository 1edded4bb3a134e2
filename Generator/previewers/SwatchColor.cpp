// SPDX-License-Identifier: GPL-3.0-or-later
#include "SwatchColor.h"

#include <algorithm>
#include <cmath>

namespace Preview {

namespace {

    double unit(double value) { return std::clamp(value, 0.0, 1.0); }

    QColor fromLab(double l, double a, double b)
    {
        // CIE L*a*b* (D50) to XYZ, adapted to D65 by Bradford, then to sRGB.
        const double fy = (l + 16) / 116;
        const double fx = fy + a / 500;
        const double fz = fy - b / 200;
        const auto inverse
            = [](double t) { return t > 6.0 / 29 ? t * t * t : 3 * 36.0 / 841 * (t - 4.0 / 29); };
        const double x50 = 0.9642 * inverse(fx), y50 = inverse(fy), z50 = 0.8249 * inverse(fz);
        const double x = 0.9555766 * x50 - 0.0230393 * y50 + 0.0631636 * z50;
        const double y = -0.0282895 * x50 + 1.0099416 * y50 + 0.0210077 * z50;
        const double z = 0.0122982 * x50 - 0.0204830 * y50 + 1.3299098 * z50;
        const auto gamma = [](double c) {
            c = unit(c);
            return c <= 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 1 / 2.4) - 0.055;
        };
        return QColor::fromRgbF(float(gamma(3.2404542 * x - 1.5371385 * y - 0.4985314 * z)),
            float(gamma(-0.9692660 * x + 1.8760108 * y + 0.0415560 * z)),
            float(gamma(0.0556434 * x - 0.2040259 * y + 1.0572252 * z)));
    }

}

QColor swatchDisplayColor(const PreviewSwatch& swatch)
{
    if (swatch.display.isValid())
        return swatch.display;
    const QString model = swatch.model.toUpper();
    const auto& v = swatch.values;
    if (model == u"CMYK" && v.size() >= 4) {
        const double k = unit(v[3]);
        return QColor::fromRgbF(float((1 - unit(v[0])) * (1 - k)),
            float((1 - unit(v[1])) * (1 - k)), float((1 - unit(v[2])) * (1 - k)));
    }
    if (model == u"RGB" && v.size() >= 3)
        return QColor::fromRgbF(float(unit(v[0])), float(unit(v[1])), float(unit(v[2])));
    if (model == u"LAB" && v.size() >= 3)
        return fromLab(std::clamp(v[0], 0.0, 100.0), v[1], v[2]);
    if ((model == u"GRAY" || model == u"GREY") && !v.empty()) {
        const float level = float(1 - unit(v[0]));
        return QColor::fromRgbF(level, level, level);
    }
    return {};
}

}
