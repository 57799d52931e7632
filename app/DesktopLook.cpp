// SPDX-License-Identifier: MIT
#include "app/DesktopLook.h"

#include <QApplication>
#include <QFontInfo>
#include <QIcon>
#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype longestName = 100; // characters
constexpr qreal smallestFont = 4; // points
constexpr qreal largestFont = 96;
constexpr qsizetype hexDigitsOfAColor = 8;

constexpr std::array groups { QPalette::Active, QPalette::Inactive, QPalette::Disabled };

bool isWhole(const QString &text, const QString &pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
}

// The name of a theme, never a path: it is looked up in the system's folders.
const QString themeName = u"[A-Za-z0-9_][A-Za-z0-9 _.+-]{0,63}"_s;

bool isThemeName(const QString &name)
{
    return isWhole(name, themeName);
}

struct Variable
{
    const char *name;
    QString pattern; // of what it may hold
};

const std::vector<Variable> &variables()
{
    static const QString factor = u"(0\\.[5-9][0-9]{0,5}|[1-7](\\.[0-9]{1,6})?|8)"_s;
    static const std::vector<Variable> list {
        { "QT_SCALE_FACTOR", factor },
        { "QT_SCREEN_SCALE_FACTORS", u"(([A-Za-z0-9-]{1,32}=)?%1(;|$)){1,16}"_s.arg(factor) },
        { "QT_SCALE_FACTOR_ROUNDING_POLICY", u"(Round|Ceil|Floor|RoundPreferFloor|PassThrough)"_s },
        { "QT_AUTO_SCREEN_SCALE_FACTOR", u"[01]"_s },
        { "QT_ENABLE_HIGHDPI_SCALING", u"[01]"_s },
        { "QT_FONT_DPI", u"[1-9][0-9]{1,2}"_s },
        { "XCURSOR_SIZE", u"[1-9][0-9]{0,2}"_s },
        { "XCURSOR_THEME", themeName },
    };
    return list;
}

bool mayHold(const QByteArray &name, const QByteArray &value)
{
    return std::any_of(variables().begin(), variables().end(), [&](const Variable &variable) {
        return name == variable.name && isWhole(QString::fromUtf8(value), variable.pattern);
    });
}

std::vector<QPalette::ColorRole> colorRoles()
{
    std::vector<QPalette::ColorRole> roles;
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
        if (role != QPalette::NoRole)
            roles.push_back(static_cast<QPalette::ColorRole>(role));
    }
    return roles;
}

QByteArray toHex(const QPalette &palette)
{
    QByteArray text;
    for (const QPalette::ColorGroup group : groups) {
        for (const QPalette::ColorRole role : colorRoles())
            text += QByteArray::number(palette.color(group, role).rgba(), 16).rightJustified(8, '0');
    }
    return text;
}

std::optional<QPalette> paletteFromHex(const QByteArray &text)
{
    const std::vector<QPalette::ColorRole> roles = colorRoles();
    const qsizetype count = static_cast<qsizetype>(groups.size()) * static_cast<qsizetype>(roles.size());
    if (text.size() != count * hexDigitsOfAColor || !isWhole(QString::fromLatin1(text), u"[0-9a-f]*"_s))
        return std::nullopt;
    QPalette palette;
    qsizetype position = 0;
    for (const QPalette::ColorGroup group : groups) {
        for (const QPalette::ColorRole role : roles) {
            const uint color = text.mid(position, hexDigitsOfAColor).toUInt(nullptr, 16);
            palette.setColor(group, role, QColor::fromRgba(color));
            position += hexDigitsOfAColor;
        }
    }
    return palette;
}

QByteArray toWords(const QFont &font)
{
    // One with a size in pixels has none in points, and what is drawn is rounded to pixels.
    const qreal size = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
    return QByteArray::number(size) + ' ' + QByteArray::number(font.weight()) + ' '
        + (font.italic() ? "italic " : "upright ") + font.family().toUtf8();
}

// Size in points, weight, slant, family.
std::optional<QFont> fontFromWords(const QString &text)
{
    const QString family = text.section(u' ', 3);
    const qreal size = text.section(u' ', 0, 0).toDouble();
    const int weight = text.section(u' ', 1, 1).toInt();
    const bool isPrintable = std::all_of(family.begin(), family.end(), [](QChar c) { return c.isPrint(); });
    if (family.isEmpty() || family.size() > longestName || !isPrintable
        || !(size >= smallestFont && size <= largestFont) || weight < 1 || weight > 1000)
        return std::nullopt;
    QFont font(family);
    font.setPointSizeF(size);
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setItalic(text.section(u' ', 2, 2) == "italic"_L1);
    return font;
}

} // namespace

QByteArray DesktopLook::toText() const
{
    QByteArray text;
    if (palette)
        text += "palette " + toHex(*palette) + '\n';
    if (font)
        text += "font " + toWords(*font) + '\n';
    if (!iconTheme.isEmpty())
        text += "icons " + iconTheme.toUtf8() + '\n';
    for (const auto &[name, value] : environment)
        text += name + ' ' + value + '\n';
    return text;
}

DesktopLook DesktopLook::fromText(const QByteArray &text)
{
    DesktopLook look;
    if (text.size() > longestText)
        return look;
    for (const QByteArray &line : text.split('\n')) {
        const qsizetype space = line.indexOf(' ');
        const QByteArray key = line.left(space);
        const QByteArray value = space < 0 ? QByteArray() : line.mid(space + 1);
        if (key == "palette")
            look.palette = paletteFromHex(value);
        else if (key == "font")
            look.font = fontFromWords(QString::fromUtf8(value));
        else if (key == "icons" && isThemeName(QString::fromUtf8(value)))
            look.iconTheme = QString::fromUtf8(value);
        else if (mayHold(key, value))
            look.environment.emplace_back(key, value);
    }
    return look;
}

DesktopLook DesktopLook::ofThisProcess()
{
    DesktopLook look;
    look.palette = QApplication::palette();
    look.font = QApplication::font();
    if (isThemeName(QIcon::themeName()))
        look.iconTheme = QIcon::themeName();
    for (const Variable &variable : variables()) {
        const QByteArray value = qgetenv(variable.name);
        if (mayHold(variable.name, value))
            look.environment.emplace_back(variable.name, value);
    }
    return look;
}

void DesktopLook::applyToEnvironment() const
{
    for (const auto &[name, value] : environment) {
        if (!qEnvironmentVariableIsSet(name.constData()))
            qputenv(name.constData(), value);
    }
}

void DesktopLook::apply() const
{
    if (palette)
        QApplication::setPalette(*palette);
    if (font)
        QApplication::setFont(*font);
    if (!iconTheme.isEmpty())
        QIcon::setThemeName(iconTheme);
}
