// oxutWcMatchEx: the wildcard patterns of drafting programs. A pattern is
// compiled to a token list (once for all the names it is matched against)
// and run as a set of live token positions over the name, so that the time
// is at most the square of the name's length: no backtracking, whatever the
// stars, and a pattern of any length is compiled in linear time.
#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cwctype>
#include <locale.h>
#include <string>
#include <string_view>
#include <vector>
#include <wctype.h>

#include "base/CaseFold.h"
#include "oxut.h"

namespace {

// Letters by the same C.UTF-8 tables that CaseFold uses, so that every
// script has letters; a character with a case partner counts as a letter
// even where the table says otherwise.
locale_t classLocale() {
    static const locale_t loc = [] {
        locale_t l = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
        if (!l) l = newlocale(LC_CTYPE_MASK, "C.utf8", static_cast<locale_t>(nullptr));
        return l;
    }();
    return loc;
}

bool isLetter(wchar_t ch) {
    if (ch < 0x80) return (ch >= L'a' && ch <= L'z') || (ch >= L'A' && ch <= L'Z');
    const locale_t loc = classLocale();
    if (loc && iswalpha_l(static_cast<wint_t>(ch), loc)) return true;
    return pavo::foldCase(ch) != ch || pavo::upperCase(ch) != ch;
}

bool isDigit(wchar_t ch) { return ch >= L'0' && ch <= L'9'; }

struct ClassItem {
    wchar_t low, high; // a single character has low == high
};

struct Token {
    enum Kind { Literal, Digit, Letter, Other, AnyOne, AnySequence, Class };
    Kind kind = Literal;
    wchar_t ch = 0;
    bool negated = false;         // "[~...]"
    std::vector<ClassItem> items; // Class
};

struct Alternative {
    bool negated = false; // leading '~'
    std::vector<Token> tokens;
};

// Parses "[...]" at a '[' of one pattern. A '[' without its ']' is a
// literal, and a pattern can hold many of them: the places from which an
// earlier scan ran to the end without a ']' are remembered, so that a later
// scan that reaches one stops there, and the whole pattern is parsed in
// time linear in its length.
class ClassParser {
public:
    explicit ClassParser(std::wstring_view p) : m_p(p), m_deadEnd(p.size() + 1, 0) {}

    // Parses the class at `pos` (the '['); false when there is no closing
    // ']' (the '[' is then a literal).
    bool parse(size_t& pos, Token& token) {
        const std::wstring_view p = m_p;
        size_t i = pos + 1;
        token = Token{};
        token.kind = Token::Class;
        if (i < p.size() && p[i] == L'~') {
            token.negated = true;
            ++i;
        }
        bool first = true;
        m_walked.clear();
        while (i < p.size()) {
            wchar_t ch = p[i];
            if (!first) {
                // From here on the scan depends on the place alone.
                if (m_deadEnd[i]) break;
                if (ch == L']') {
                    pos = i + 1;
                    return true;
                }
                m_walked.push_back(i);
            }
            first = false;
            if (ch == L'`' && i + 1 < p.size()) ch = p[++i];
            ++i;
            wchar_t high = ch;
            if (i + 1 < p.size() && p[i] == L'-' && p[i + 1] != L']') {
                high = p[i + 1];
                i += 2;
                if (high == L'`' && i < p.size()) high = p[i++];
            }
            token.items.push_back({ch, high});
        }
        for (const size_t place : m_walked)
            m_deadEnd[place] = 1;
        return false;
    }

private:
    std::wstring_view m_p;
    std::vector<char> m_deadEnd;
    std::vector<size_t> m_walked;
};

Alternative compile(std::wstring_view p) {
    Alternative alt;
    ClassParser classes(p);
    size_t i = 0;
    if (!p.empty() && p[0] == L'~') {
        alt.negated = true;
        i = 1;
    }
    while (i < p.size()) {
        const wchar_t ch = p[i];
        Token token;
        switch (ch) {
        case L'#':
            token.kind = Token::Digit;
            ++i;
            break;
        case L'@':
            token.kind = Token::Letter;
            ++i;
            break;
        case L'.':
            token.kind = Token::Other;
            ++i;
            break;
        case L'?':
            token.kind = Token::AnyOne;
            ++i;
            break;
        case L'*':
            token.kind = Token::AnySequence;
            ++i;
            if (!alt.tokens.empty() && alt.tokens.back().kind == Token::AnySequence) continue;
            break;
        case L'`':
            token.ch = i + 1 < p.size() ? p[i + 1] : L'`';
            i += i + 1 < p.size() ? 2 : 1;
            break;
        case L'[':
            if (!classes.parse(i, token)) {
                token = Token{};
                token.ch = ch;
                ++i;
            }
            break;
        default:
            token.ch = ch;
            ++i;
            break;
        }
        alt.tokens.push_back(std::move(token));
    }
    return alt;
}

// Splits at commas that are not escaped and not inside a class.
std::vector<std::wstring_view> splitAlternatives(std::wstring_view p) {
    std::vector<std::wstring_view> parts;
    ClassParser classes(p);
    size_t start = 0;
    for (size_t i = 0; i < p.size(); ++i) {
        if (p[i] == L'`') {
            ++i;
        } else if (p[i] == L'[') {
            Token ignored;
            size_t end = i;
            if (classes.parse(end, ignored)) i = end - 1;
        } else if (p[i] == L',') {
            parts.push_back(p.substr(start, i - start));
            start = i + 1;
        }
    }
    parts.push_back(p.substr(start));
    return parts;
}

bool sameChar(wchar_t a, wchar_t b, bool ignoreCase) {
    return a == b || (ignoreCase && pavo::foldCase(a) == pavo::foldCase(b));
}

bool inClass(const Token& token, wchar_t ch, bool ignoreCase) {
    const wchar_t c = ignoreCase ? pavo::foldCase(ch) : ch;
    bool found = false;
    for (const ClassItem& item : token.items) {
        const wchar_t low = ignoreCase ? pavo::foldCase(item.low) : item.low;
        const wchar_t high = ignoreCase ? pavo::foldCase(item.high) : item.high;
        if (low <= c && c <= high) {
            found = true;
            break;
        }
    }
    return found != token.negated;
}

bool matchesOne(const Token& token, wchar_t ch, bool ignoreCase) {
    switch (token.kind) {
    case Token::Literal:
        return sameChar(token.ch, ch, ignoreCase);
    case Token::Digit:
        return isDigit(ch);
    case Token::Letter:
        return isLetter(ch);
    case Token::Other:
        return !isDigit(ch) && !isLetter(ch);
    case Token::AnyOne:
        return true;
    case Token::AnySequence:
        return true;
    case Token::Class:
        return inClass(token, ch, ignoreCase);
    }
    return false;
}

// The positions a match can be at, as a list, with a stamp a position so
// that each step costs what is live rather than the pattern's length.
struct LiveStates {
    std::vector<size_t> live, next;
    std::vector<std::uint64_t> seen;
    std::uint64_t stamp = 0;

    // Adds position `i` to `next` and, through stars (which may match
    // nothing), the positions after them.
    void add(const std::vector<Token>& tokens, size_t i) {
        while (i <= tokens.size() && seen[i] != stamp) {
            seen[i] = stamp;
            next.push_back(i);
            if (i == tokens.size() || tokens[i].kind != Token::AnySequence) break;
            ++i;
        }
    }

    bool match(const std::vector<Token>& tokens, std::wstring_view name, bool ignoreCase) {
        if (seen.size() < tokens.size() + 1) seen.resize(tokens.size() + 1, 0);
        ++stamp;
        next.clear();
        add(tokens, 0);
        for (const wchar_t ch : name) {
            live.swap(next);
            next.clear();
            ++stamp;
            for (const size_t i : live) {
                if (i == tokens.size() || !matchesOne(tokens[i], ch, ignoreCase)) continue;
                // A star stays where it is; any other token moves on.
                add(tokens, tokens[i].kind == Token::AnySequence ? i : i + 1);
            }
            if (next.empty()) return false;
        }
        return std::find(next.begin(), next.end(), tokens.size()) != next.end();
    }
};

// The last pattern, compiled: a caller matches every name of a table against
// one pattern, which is then compiled once.
struct CompiledPattern {
    bool valid = false;
    std::wstring text;
    std::vector<Alternative> alternatives;
    LiveStates states;

    const std::vector<Alternative>& of(std::wstring_view pattern) {
        if (!valid || text != pattern) {
            text = pattern;
            alternatives.clear();
            for (const std::wstring_view part : splitAlternatives(text))
                alternatives.push_back(compile(part));
            valid = true;
        }
        return alternatives;
    }
};

} // namespace

bool oxutWcMatchEx(const wchar_t* name, const wchar_t* pattern, bool ignoreCase) {
    if (!name || !pattern) return false;
    thread_local CompiledPattern compiled;
    const std::wstring_view text(name);
    for (const Alternative& alt : compiled.of(pattern))
        if (compiled.states.match(alt.tokens, text, ignoreCase) != alt.negated) return true;
    return false;
}
