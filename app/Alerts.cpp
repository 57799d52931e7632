// SPDX-License-Identifier: MIT
//
// Every error and notice: one alert sheet at a time on the main window.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/SystemLog.h"
#include "ui/AlertSheet.h"

#include <QMainWindow>
#include <QMetaMethod>
#include <QVariant>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

// An invokable of this name, with any arguments.
QMetaMethod invokableNamed(const QMetaObject &metaObject, const QByteArray &name)
{
    for (int i = 0; i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        if (method.name() == name && method.methodType() != QMetaMethod::Signal)
            return method;
    }
    return {};
}

// A follow-up gets the alert and the return code; any other argument is empty. Returns false when an argument
// cannot be made.
bool invokeFollowUp(const QMetaMethod &method, QObject *target, AlertSheet *alert, int returnCode)
{
    QObject *object = alert;
    const QByteArrayList types = method.parameterTypes();
    std::array<QVariant, 10> empty; // as many as an invocation can have
    std::array<QGenericArgument, 10> arguments;
    for (std::size_t i = 0; i < arguments.size() && i < static_cast<std::size_t>(types.size()); ++i) {
        const QByteArray &type = types.at(static_cast<qsizetype>(i));
        if (i == 0 && type == "AlertSheet*") {
            arguments[i] = QGenericArgument(type.constData(), static_cast<const void *>(&alert));
        } else if (i == 0 && type == "QObject*") {
            arguments[i] = QGenericArgument(type.constData(), static_cast<const void *>(&object));
        } else if (i == 1 && type == "int") {
            arguments[i] = QGenericArgument(type.constData(), static_cast<const void *>(&returnCode));
        } else {
            empty[i] = QVariant(method.parameterMetaType(static_cast<int>(i)));
            if (!empty[i].isValid())
                return false;
            arguments[i] = QGenericArgument(type.constData(), empty[i].constData());
        }
    }
    return method.invoke(target, Qt::DirectConnection, arguments[0], arguments[1], arguments[2], arguments[3],
        arguments[4], arguments[5], arguments[6], arguments[7], arguments[8], arguments[9]);
}

} // namespace

void ZorvexDiskManagerAppDelegate::messageWithTitle(
    const QString &title, const QString &infoText, unsigned alertStyle, const char *didEndSelector)
{
    if (alertInProgress) {
        systemLog(u"Warning: Silently dropping cascading alert with titleText=\"%1\" "
                  "infoText=\"%2\" alertStyle=%3..."_s.arg(title, infoText, QString::number(alertStyle)));
        return;
    }
    alertInProgress = true;

    auto *alert = new AlertSheet(static_cast<AlertSheet::Style>(alertStyle));
    alert->addButtonWithTitle(u"OK"_s);
    alert->setMessageText(title);
    alert->setInformativeText(infoText);
    alert->beginSheetModalForWindow(window,
        [this, alert, didEndSelector](int returnCode) { alertDidEnd(alert, returnCode, didEndSelector); });
}

void ZorvexDiskManagerAppDelegate::errorMessageWithTitle(const QString &title, const QString &infoText)
{
    messageWithTitle(title, infoText, static_cast<unsigned>(AlertSheet::Style::Warning));
}

void ZorvexDiskManagerAppDelegate::errorMessage(const QString &text)
{
    errorMessageWithTitle(u"Error"_s, text);
}

void ZorvexDiskManagerAppDelegate::infoMessageWithTitle(const QString &title, const QString &infoText)
{
    messageWithTitle(title, infoText, static_cast<unsigned>(AlertSheet::Style::Informational));
}

void ZorvexDiskManagerAppDelegate::alertDidEnd(AlertSheet *alert, int returnCode, const char *contextInfo)
{
    alertInProgress = false; // first, so that the follow-up may show an alert itself
    if (!contextInfo)
        return;
    const QMetaMethod method = invokableNamed(*metaObject(), contextInfo);
    if (!method.isValid() || !invokeFollowUp(method, this, alert, returnCode))
        systemLog(u"Unable to find selector passed to alertDidEnd."_s);
}
