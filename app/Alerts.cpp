// SPDX-License-Identifier: MIT
//
// Every error and notice: one alert sheet at a time on the main window.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/SystemLog.h"
#include "ui/AlertSheet.h"

#include <QMainWindow>
#include <QMetaMethod>

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

// What a follow-up is given: the alert, the return code, and nothing as context.
void invokeFollowUp(const QMetaMethod &method, QObject *target, AlertSheet *alert, int returnCode)
{
    QObject *object = alert;
    void *context = nullptr;
    QGenericArgument arguments[3];
    for (int i = 0; i < std::min(3, method.parameterCount()); ++i) {
        const QByteArray type = method.parameterTypeName(i);
        if (type == "AlertSheet*")
            arguments[i] = Q_ARG(AlertSheet *, alert);
        else if (type == "QObject*")
            arguments[i] = Q_ARG(QObject *, object);
        else if (type == "int")
            arguments[i] = Q_ARG(int, returnCode);
        else if (type == "void*")
            arguments[i] = Q_ARG(void *, context);
    }
    method.invoke(target, Qt::DirectConnection, arguments[0], arguments[1], arguments[2]);
}

} // namespace

void ZorvexDiskManagerAppDelegate::messageWithTitle(
    const QString &title, const QString &infoText, unsigned alertStyle, const char *didEndSelector)
{
    if (alertInProgress) {
        systemLog(QStringLiteral("Warning: Silently dropping cascading alert with titleText=\"%1\" "
                                 "infoText=\"%2\" alertStyle=%3...")
                      .arg(title, infoText, QString::number(alertStyle)));
        return;
    }
    alertInProgress = true;

    auto *alert = new AlertSheet(static_cast<AlertSheet::Style>(alertStyle));
    alert->addButtonWithTitle(QStringLiteral("OK"));
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
    errorMessageWithTitle(QStringLiteral("Error"), text);
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
    if (!method.isValid()) {
        systemLog(QStringLiteral("Unable to find selector passed to alertDidEnd."));
        return;
    }
    invokeFollowUp(method, this, alert, returnCode);
}
