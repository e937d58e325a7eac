#include "editor/Output.h"

#include "base/Utf8.h"

namespace pavo::editor {

void Output::write(std::wstring_view text) {
    if (text.empty()) return;
    if (m_afterAnswer) {
        m_afterAnswer = false;
        if (text.front() == L'\n') {
            // The answer's line is already ended (a terminal) or this line
            // end ends it (a script): either way no empty line.
            if (m_atLineStart) text.remove_prefix(1);
        } else if (!m_atLineStart) {
            *m_out << '\n';
        }
        if (text.empty()) return;
    }
    *m_out << pavo::toUtf8(text);
    m_atLineStart = text.back() == L'\n';
}

void Output::error(std::wstring_view text) {
    if (m_errors == m_out) {
        write(L"\n" + std::wstring(text));
        return;
    }
    // On a screen the message takes a line of its own; the output's next
    // line break is then already written.
    if (!m_atLineStart) *m_out << '\n';
    m_atLineStart = true;
    m_afterAnswer = true;
    m_out->flush();
    *m_errors << pavo::toUtf8(text) << '\n';
    m_errors->flush();
}

void Output::answered(std::wstring_view echo, bool echoIt) {
    if (echoIt) {
        *m_out << pavo::toUtf8(echo);
        m_atLineStart = false;
    } else {
        m_atLineStart = true; // the user's Enter ended the line
    }
    m_afterAnswer = true;
}

void Output::finishLine() {
    if (!m_atLineStart) *m_out << '\n';
    m_atLineStart = true;
    m_afterAnswer = false;
    m_out->flush();
}

void Output::flush() { m_out->flush(); }

} // namespace pavo::editor
