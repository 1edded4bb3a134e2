// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QVariantMap>
#include <QWidget>

class QLabel;

// What the card of a file that has no preview says about it.
struct PreviewCardFacts {
    // The icon theme's names of the MIME type's picture and its kind's; without either, the
    // card draws a sheet of its own.
    QString iconName;
    QString genericIconName;
    QString name;
    QString kind;
    // Empty when the file cannot be read.
    QString size;
    QString modified;

    // The kind is the identifier's description (see UTType), else the MIME type's comment.
    static PreviewCardFacts forFile(
        const QString& path, const QString& identifier, const QList<QVariantMap>& infoDictionaries);
};

// The file's icon, name, kind, size and modification date, and one line that says why there is
// no preview.
class PreviewCard : public QWidget {
    Q_OBJECT
public:
    PreviewCard(const PreviewCardFacts& facts, const QString& reason, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showIcon();

    PreviewCardFacts m_facts;
    QLabel* m_icon;
    bool m_iconRequested = false;
};
