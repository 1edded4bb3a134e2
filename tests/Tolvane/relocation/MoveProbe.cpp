// SPDX-License-Identifier: GPL-3.0-or-later
// The application itself, with a hand that answers its windows, for the tests of the move into
// the Applications folder. It notes into $MOVE_PROBE_LOG, one line each: "start <bundle path>",
// "alert | <message> | <informative text> | <buttons, default first> | escape <title> | box
// <title>", "window <class>" for any other window (the launch went on) and "end". It answers the
// question as $MOVE_PROBE_ANSWER says: "move", "stay" (Escape) or "stay-for-good" (ticks the box,
// then Escape); it acknowledges a failure alert and closes other windows, so that it ends itself.
#include "Bundle.h"
#include "TLApplication.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace {

void note(const QString& line)
{
    QFile log(qEnvironmentVariable("MOVE_PROBE_LOG"));
    if (log.open(QIODevice::Append))
        log.write((line + u'\n').toUtf8());
}

void noteAlert(QMessageBox* box)
{
    QStringList buttons;
    if (box->defaultButton())
        buttons << box->defaultButton()->text();
    for (QAbstractButton* button : box->buttons()) {
        if (button != box->defaultButton())
            buttons << button->text();
    }
    note(QStringList { QStringLiteral("alert"), box->text(), box->informativeText(),
        buttons.join(u','),
        QStringLiteral("escape ") + (box->escapeButton() ? box->escapeButton()->text() : QString()),
        QStringLiteral("box ") + (box->checkBox() ? box->checkBox()->text() : QString()) }
             .join(QStringLiteral(" | ")));
}

// The question is the alert with the check box.
void answerAlert(QMessageBox* box)
{
    const QString answer = qEnvironmentVariable("MOVE_PROBE_ANSWER");
    if (!box->checkBox() || answer == u"move")
        return box->defaultButton()->click();
    box->checkBox()->setChecked(answer == u"stay-for-good");
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(box, &escape);
}

class Hand : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::Show || !widget || !widget->isWindow())
            return false;
        if (auto* box = qobject_cast<QMessageBox*>(widget)) {
            noteAlert(box);
            QMetaObject::invokeMethod(
                box, [box = QPointer(box)] { answerAlert(box); }, Qt::QueuedConnection);
        } else {
            note(
                QStringLiteral("window ") + QString::fromLatin1(widget->metaObject()->className()));
            // A dialog's close rejects it; the call is dropped if the window is gone first.
            QMetaObject::invokeMethod(
                widget, [widget] { widget->close(); }, Qt::QueuedConnection);
        }
        return false;
    }
};

void installHand()
{
    note(QStringLiteral("start ") + Bundle::mainBundle().bundlePath());
    qApp->installEventFilter(new Hand(qApp));
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { note(QStringLiteral("end")); });
}

}

Q_COREAPP_STARTUP_FUNCTION(installHand)

int main(int argc, char** argv) { return NSApplicationMain(argc, argv); }
