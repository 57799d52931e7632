// SPDX-License-Identifier: MIT
#include "platform/propertylists/PropertyListGuard.h"

namespace {

std::size_t occurrences(std::string_view text, std::string_view what)
{
    std::size_t count = 0;
    for (auto at = text.find(what); at != text.npos; at = text.find(what, at + what.size()))
        ++count;
    return count;
}

std::string_view elementName(std::string_view tag)
{
    return tag.substr(0, tag.find_first_of(" \t\r\n/>"));
}

bool isContainer(std::string_view name)
{
    return name == "array" || name == "dict";
}

// Follows the markup and counts. Where a more lenient lexer could see another structure, the list is refused
// or the larger count is taken.
class XmlGuard
{
public:
    explicit XmlGuard(std::string_view xml)
        : m_xml(xml)
    {
    }

    bool check()
    {
        while ((m_at = m_xml.find('<', m_at)) != m_xml.npos) {
            const std::string_view rest = m_xml.substr(m_at);
            bool accepted = false;
            if (rest.starts_with("<!--"))
                accepted = skip("-->", 4);
            else if (rest.starts_with("<![CDATA["))
                accepted = m_insideText && skip("]]>", 9);
            else if (rest.starts_with("<?") || rest.starts_with("<!"))
                accepted = skipDeclaration();
            else
                accepted = readTag();
            if (!accepted || m_depth + m_hiddenContainers > PropertyListLimits::depth
                || m_elements > PropertyListLimits::values)
                return false;
        }
        return m_depth == 0;
    }

private:
    // Skips to the end of the terminator. Containers in between are counted as if they nested.
    bool skip(std::string_view terminator, std::size_t openingSize)
    {
        const std::size_t end = m_xml.find(terminator, m_at + 2);
        if (end == m_xml.npos || end < m_at + openingSize)
            return false;
        const std::string_view skipped = m_xml.substr(m_at, end - m_at);
        m_hiddenContainers += occurrences(skipped, "<array") + occurrences(skipped, "<dict");
        m_at = end + terminator.size();
        return true;
    }

    bool skipDeclaration()
    {
        const std::size_t end = m_xml.find('>', m_at);
        if (m_depth > 0 || end == m_xml.npos)
            return false;
        if (m_xml.substr(m_at + 1, end - m_at - 1).find_first_of("<[") != m_xml.npos)
            return false;
        m_at = end + 1;
        return true;
    }

    bool readTag()
    {
        const std::size_t end = m_xml.find('>', m_at);
        if (end == m_xml.npos)
            return false;
        const std::string_view tag = m_xml.substr(m_at + 1, end - m_at - 1);
        m_at = end + 1;
        const std::string_view forbidden = m_depth > 0 ? "<\"'" : "<";
        if (tag.empty() || tag.find_first_of(forbidden) != tag.npos)
            return false;
        if (tag.front() == '/') {
            m_insideText = false;
            return !isContainer(elementName(tag.substr(1))) || m_depth-- > 0;
        }
        ++m_elements;
        const bool isClosed = tag.back() == '/';
        m_insideText = !isClosed && !isContainer(elementName(tag));
        if (!isClosed && isContainer(elementName(tag)))
            ++m_depth;
        return true;
    }

    std::string_view m_xml;
    std::size_t m_at = 0;
    std::size_t m_depth = 0;
    std::size_t m_hiddenContainers = 0;
    std::size_t m_elements = 0;
    bool m_insideText = false;
};

} // namespace

bool isBoundedXmlPropertyList(std::string_view xml)
{
    // libplist ends the program over a key with a zero character in it.
    return xml.find('\0') == xml.npos && XmlGuard(xml).check();
}
