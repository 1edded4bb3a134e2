// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUserDriver.h"

#include <QDialog>

class QDialogButtonBox;
class QPushButton;

// The window that offers a newer version: its version, its release notes, and the buttons
// "Download…" (opens the download page) and "Remind Me Later".
class SUUpdateAlert : public QDialog {
    Q_OBJECT
public:
    explicit SUUpdateAlert(const SUUpdateFound& update, QWidget* parent = nullptr);

    QPushButton* downloadButton() const { return m_download; }
    QPushButton* remindLaterButton() const { return m_remindLater; }

private:
    QWidget* releaseNotes(const SUAppcastItem& item);

    QUrl m_downloadPage;
    QPushButton* m_download;
    QPushButton* m_remindLater;
};
