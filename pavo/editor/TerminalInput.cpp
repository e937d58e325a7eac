// Answers typed on the controlling terminal, edited with libedit: history
// (kept in a file), Tab completion of the prompt's keywords, and Ctrl-C to
// cancel the prompt.
#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <histedit.h>
#include <unistd.h>

#include "base/CaseFold.h"
#include "base/Utf8.h"
#include "editor/Input.h"

namespace pavo::editor {
namespace {

volatile std::sig_atomic_t g_interrupted = 0;

extern "C" void onInterrupt(int) { g_interrupted = 1; }

// Reads one character for libedit. Ours rather than the built-in one so that
// Ctrl-C, which interrupts read(), ends el_gets at once as a cancel.
int readCharacter(EditLine*, wchar_t* ch) {
    auto readByte = [](unsigned char& byte) -> int {
        for (;;) {
            const ssize_t n = ::read(STDIN_FILENO, &byte, 1);
            if (n == 1) return 1;
            if (n == 0) return 0;
            if (errno != EINTR || g_interrupted) return -1;
        }
    };
    unsigned char lead = 0;
    const int first = readByte(lead);
    if (first != 1) {
        *ch = L'\0';
        return first;
    }
    const int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    std::string bytes(1, static_cast<char>(lead));
    for (int i = 0; i < extra; ++i) {
        unsigned char next = 0;
        if (readByte(next) != 1) break;
        bytes += static_cast<char>(next);
    }
    const std::wstring decoded = pavo::fromUtf8(bytes);
    *ch = decoded.empty() ? L'\uFFFD' : decoded[0];
    return 1;
}

class TerminalInput : public InputSource {
public:
    explicit TerminalInput(std::string historyFile) : m_historyFile(std::move(historyFile)) {
        // libedit handles multi-byte text only under a UTF-8 character type.
        if (std::strcmp(std::setlocale(LC_CTYPE, nullptr), "C") == 0) std::setlocale(LC_CTYPE, "");

        struct sigaction action {};
        action.sa_handler = onInterrupt;
        sigemptyset(&action.sa_mask);
        action.sa_flags = 0; // no SA_RESTART: Ctrl-C must interrupt read()
        sigaction(SIGINT, &action, &m_previousInterrupt);

        m_history = history_init();
        history(m_history, &m_event, H_SETSIZE, 1000);
        history(m_history, &m_event, H_SETUNIQUE, 1);
        if (!m_historyFile.empty()) history(m_history, &m_event, H_LOAD, m_historyFile.c_str());

        m_el = el_init("pavo", stdin, stdout, stderr);
        el_set(m_el, EL_CLIENTDATA, this);
        el_set(m_el, EL_EDITOR, "emacs");
        el_set(m_el, EL_PROMPT, &TerminalInput::promptText);
        el_set(m_el, EL_HIST, history, m_history);
        el_set(m_el, EL_GETCFN, readCharacter);
        // The wide call keeps these names as given; the narrow one copies
        // them and never frees the copies.
        el_wset(m_el, EL_ADDFN, L"pavo-complete", L"Complete the keyword", &TerminalInput::complete);
        el_set(m_el, EL_BIND, "^I", "pavo-complete", nullptr);
        el_source(m_el, nullptr);
    }

    ~TerminalInput() override {
        if (!m_historyFile.empty()) history(m_history, &m_event, H_SAVE, m_historyFile.c_str());
        el_end(m_el);
        history_end(m_history);
        sigaction(SIGINT, &m_previousInterrupt, nullptr);
    }

    InputLine read(const std::wstring& prompt, const std::vector<std::wstring>& completions) override {
        m_prompt = pavo::toUtf8(prompt);
        m_completions = completions;
        g_interrupted = 0;
        int count = 0;
        const char* line = el_gets(m_el, &count);
        if (g_interrupted) {
            g_interrupted = 0;
            el_reset(m_el);
            return {InputLine::Cancel, {}};
        }
        if (!line || count <= 0) return InputLine{};
        std::string text(line, static_cast<std::size_t>(count));
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
            text.pop_back();
        if (!text.empty()) history(m_history, &m_event, H_ENTER, text.c_str());
        return {InputLine::Text, std::move(text)};
    }

    bool isTerminal() const override { return true; }
    bool echoes() const override { return false; }
    std::string name() const override { return "terminal"; }

private:
    static TerminalInput* self(EditLine* el) {
        void* data = nullptr;
        el_get(el, EL_CLIENTDATA, &data);
        return static_cast<TerminalInput*>(data);
    }

    static char* promptText(EditLine* el) { return self(el)->m_prompt.data(); }

    // Completes the word before the cursor with the keywords it begins;
    // lists them when more than one fits.
    static unsigned char complete(EditLine* el, int) {
        TerminalInput* input = self(el);
        const LineInfo* info = el_line(el);
        const char* start = info->cursor;
        while (start > info->buffer && start[-1] != ' ')
            --start;
        const std::wstring typed = pavo::fromUtf8(std::string_view(start, info->cursor - start));
        std::vector<std::wstring> fits;
        for (const std::wstring& keyword : input->m_completions) {
            if (keyword.size() >= typed.size() && pavo::equalNoCase(keyword.substr(0, typed.size()), typed)) {
                fits.push_back(keyword);
            }
        }
        if (fits.empty()) return CC_REFRESH_BEEP;
        // The longest common beginning of the fitting keywords.
        std::size_t common = fits[0].size();
        for (const std::wstring& fit : fits) {
            std::size_t n = 0;
            while (n < common && n < fit.size() && pavo::foldCase(fit[n]) == pavo::foldCase(fits[0][n]))
                ++n;
            common = n;
        }
        if (common > typed.size()) {
            el_insertstr(el,
                         pavo::toUtf8(std::wstring_view(fits[0]).substr(typed.size(), common - typed.size())).c_str());
            return CC_REFRESH;
        }
        if (fits.size() == 1) return CC_REFRESH;
        std::string listing = "\n";
        for (const std::wstring& fit : fits)
            listing += pavo::toUtf8(fit) + "  ";
        std::fprintf(stdout, "%s\n", listing.c_str());
        return CC_REDISPLAY;
    }

    std::string m_historyFile;
    std::string m_prompt;
    std::vector<std::wstring> m_completions;
    struct sigaction m_previousInterrupt {};
    History* m_history = nullptr;
    HistEvent m_event{};
    EditLine* m_el = nullptr;
};

} // namespace

std::unique_ptr<InputSource> makeTerminalInput(const std::string& historyFile) {
    return std::make_unique<TerminalInput>(historyFile);
}

} // namespace pavo::editor
