// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

// The platform's style, except that the arrows of a menu bar's or a tool bar's extension button
// are drawn rather than read. Every menu bar asks for its arrow when it is made, and the style
// reads it from a picture file, which makes Qt load every image plugin of the system before the
// first window can appear.
class DrawnIconStyle : public QProxyStyle {
public:
    QIcon standardIcon(
        StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override;
};
