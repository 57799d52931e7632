// SPDX-License-Identifier: MIT
#include "tools/diskutil/job_text_rules.h"

#include <QStringList>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace JobTextRules {

QString dissenterText(const DADissenterRef &dissenter)
{
    if (dissenter->statusString)
        return *dissenter->statusString;
    switch (static_cast<DAReturn>(dissenter->status)) {
    case DAReturn::Busy:
        return u"it is in use"_s;
    case DAReturn::NotFound:
        return u"it has gone"_s;
    default:
        return u"the disk service gives no reason"_s;
    }
}

QString commandText(const ToolCommand &command)
{
    QStringList words;
    for (QString word : QStringList(command.program) + command.arguments) {
        for (const QChar c : { u'\\', u'[', u']' }) // the backslash first: the others get one
            word.replace(c, u"\\"_s + c);
        words.append(u'[' + word + u']');
    }
    return words.join(u' ');
}

QString endText(const ToolEnd &end)
{
    switch (end.kind) {
    case ToolEnd::Kind::NotStarted:
        return u"it could not be started: %1"_s.arg(end.message);
    case ToolEnd::Kind::Killed:
        return u"it was killed by signal %1"_s.arg(end.code);
    case ToolEnd::Kind::Exited:
        break;
    }
    return u"exit status %1"_s.arg(end.code);
}

} // namespace JobTextRules
