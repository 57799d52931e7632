// SPDX-License-Identifier: MIT
#include "app/AboutPanel.h"

#include "platform/Localization.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize iconSize { 64, 64 };

class AboutPanel : public QMessageBox
{
public:
    explicit AboutPanel(QWidget *window)
        : QMessageBox(window)
    {
        setObjectName(name);
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowModality(Qt::NonModal); // a message box is modal by itself
        setWindowTitle(localizedString("WINDOW_TITLE"));
        setIconPixmap(window->windowIcon().pixmap(iconSize, window->devicePixelRatio()));
        setTextFormat(Qt::PlainText);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setText(localizedString("WINDOW_TITLE"));
        if (auto *label = findChild<QLabel *>(u"qt_msgbox_label"_s)) {
            QFont bold = label->font();
            bold.setBold(true);
            label->setFont(bold);
        }
        setInformativeText(formatLocalized(localizedString("ABOUT_TEXT"),
            { QCoreApplication::applicationVersion(), QStringLiteral(ZORVEX_HOMEPAGE) }));
        addButton(u"OK"_s, AcceptRole);
        window->installEventFilter(this);
    }

    static inline const QString name = u"aboutPanel"_s;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == parent() && event->type() == QEvent::Close)
            close();
        return QMessageBox::eventFilter(watched, event);
    }
};

} // namespace

void orderFrontStandardAboutPanel(QWidget *window, QObject *)
{
    auto *panel = window->findChild<QMessageBox *>(AboutPanel::name, Qt::FindDirectChildrenOnly);
    if (!panel)
        panel = new AboutPanel(window);
    panel->show();
    panel->raise();
    panel->activateWindow();
}
