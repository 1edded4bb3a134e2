// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUserDriver.h"

#include <QDialog>
#include <functional>

class QDialogButtonBox;
class QPushButton;

// The window that offers a newer version: its version, its release notes, whether it is
// critical, and the buttons "Install Update" (the reply Install) or, for an update that cannot be
// installed from here, "Download…" (opens the download page), and "Remind Me Later".
class SUUpdateAlert : public QDialog {
    Q_OBJECT
public:
    SUUpdateAlert(const SUUpdateFound& update, std::function<void(SUUpdateAlertChoice)> reply,
        QWidget* parent = nullptr);

    // "Install Update", or "Download…" when the update is not installable.
    QPushButton* installButton() const { return m_install; }
    QPushButton* remindLaterButton() const { return m_remindLater; }

private:
    QWidget* releaseNotes(const SUAppcastItem& item);

    QUrl m_downloadPage;
    QPushButton* m_install;
    QPushButton* m_remindLater;
};
