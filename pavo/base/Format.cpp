// printf-style formatting over packed arguments. The directives are parsed
// here and each one is rendered with fmt, so that no argument is ever read
// from a C va_list: a missing argument leaves the directive as text and a
// mismatched one is converted to something readable.
#include "OxFormat.h"

#include <cmath>
#include <limits>
#include <string>

#include <fmt/format.h>

#include "base/Utf8.h"

namespace {

std::wstring widen(const std::string& ascii) { return std::wstring(ascii.begin(), ascii.end()); }

// Shortest text that reads back as the same number ("2.5", "3").
std::wstring realText(double v) { return widen(fmt::format("{}", v)); }

std::wstring pointerText(const void* p) { return widen(fmt::format("0x{:x}", reinterpret_cast<std::uintptr_t>(p))); }

} // namespace

std::int64_t OxFormatArg::asSigned() const {
    switch (m_kind) {
    case Kind::Signed:
        return m_int;
    case Kind::Unsigned:
        return static_cast<std::int64_t>(m_uint);
    case Kind::Real:
        if (std::isnan(m_real)) return 0;
        if (m_real >= 9.2e18) return std::numeric_limits<std::int64_t>::max();
        if (m_real <= -9.2e18) return std::numeric_limits<std::int64_t>::min();
        return static_cast<std::int64_t>(m_real);
    case Kind::Pointer:
        return static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(m_ptr));
    case Kind::Wide:
    case Kind::Narrow:
        break;
    }
    // Text read as a number: its leading integer, else 0.
    const std::wstring text = asWide();
    try {
        return std::stoll(text);
    } catch (...) {
        return 0;
    }
}

std::uint64_t OxFormatArg::asUnsigned() const {
    if (m_kind == Kind::Unsigned) return m_uint;
    if (m_kind == Kind::Real && m_real >= 9.2e18) {
        return m_real >= 1.8e19 ? std::numeric_limits<std::uint64_t>::max() : static_cast<std::uint64_t>(m_real);
    }
    return static_cast<std::uint64_t>(asSigned());
}

double OxFormatArg::asReal() const {
    switch (m_kind) {
    case Kind::Signed:
        return static_cast<double>(m_int);
    case Kind::Unsigned:
        return static_cast<double>(m_uint);
    case Kind::Real:
        return m_real;
    case Kind::Pointer:
        return 0;
    case Kind::Wide:
    case Kind::Narrow:
        break;
    }
    const std::wstring text = asWide();
    try {
        return std::stod(text);
    } catch (...) {
        return 0;
    }
}

std::wstring OxFormatArg::asWide() const {
    switch (m_kind) {
    case Kind::Signed:
        return std::to_wstring(m_int);
    case Kind::Unsigned:
        return std::to_wstring(m_uint);
    case Kind::Real:
        return realText(m_real);
    case Kind::Pointer:
        return pointerText(m_ptr);
    case Kind::Wide:
        return std::wstring(m_wide);
    case Kind::Narrow:
        return pavo::fromUtf8(m_narrow);
    }
    return {};
}

namespace {

struct Directive {
    bool left = false, plus = false, space = false, alternate = false, zero = false;
    int width = 0;
    int precision = -1; // -1: none given
    wchar_t conversion = 0;
};

// Pads `body` to the directive's width with blanks (or zeros after the sign
// and prefix when `zeroAfter` is the length of that sign and prefix).
std::wstring pad(std::wstring body, const Directive& d, std::size_t zeroAfter = std::wstring::npos) {
    const std::size_t width = static_cast<std::size_t>(d.width);
    if (body.size() >= width) return body;
    const std::size_t fill = width - body.size();
    if (d.left) return body + std::wstring(fill, L' ');
    if (zeroAfter != std::wstring::npos) return body.insert(zeroAfter, fill, L'0');
    return std::wstring(fill, L' ') + body;
}

std::wstring formatText(std::wstring text, const Directive& d) {
    if (d.precision >= 0 && text.size() > static_cast<std::size_t>(d.precision)) {
        text.resize(static_cast<std::size_t>(d.precision));
    }
    return pad(std::move(text), d);
}

std::wstring formatInteger(const OxFormatArg& arg, const Directive& d) {
    const wchar_t c = d.conversion;
    const bool isSigned = c == L'd' || c == L'i';
    std::string digits;
    std::string sign;
    if (isSigned) {
        const std::int64_t v = arg.asSigned();
        const std::uint64_t magnitude = v < 0 ? 0 - static_cast<std::uint64_t>(v) : static_cast<std::uint64_t>(v);
        digits = fmt::format("{}", magnitude);
        sign = v < 0 ? "-" : d.plus ? "+" : d.space ? " " : "";
    } else {
        const std::uint64_t v = arg.asUnsigned();
        digits = c == L'x'   ? fmt::format("{:x}", v)
                 : c == L'X' ? fmt::format("{:X}", v)
                 : c == L'o' ? fmt::format("{:o}", v)
                             : fmt::format("{}", v);
        if (d.alternate && v != 0) sign = c == L'x' ? "0x" : c == L'X' ? "0X" : "";
    }
    // An explicit precision is the minimum number of digits; zero with
    // precision 0 prints no digits at all.
    if (d.precision == 0 && digits == "0") digits.clear();
    if (d.precision > 0 && digits.size() < static_cast<std::size_t>(d.precision)) {
        digits.insert(0, static_cast<std::size_t>(d.precision) - digits.size(), '0');
    }
    if (c == L'o' && d.alternate && (digits.empty() || digits[0] != '0')) digits.insert(0, "0");
    const bool zeroPad = d.zero && !d.left && d.precision < 0;
    return pad(widen(sign + digits), d, zeroPad ? sign.size() : std::wstring::npos);
}

std::wstring formatReal(double v, const Directive& d) {
    // fmt renders the number; width and zero padding are applied here, as
    // fmt pads hexadecimal floats before their "0x".
    std::string spec = "{:";
    if (d.plus)
        spec += '+';
    else if (d.space)
        spec += ' ';
    if (d.alternate) spec += '#';
    const bool hex = d.conversion == L'a' || d.conversion == L'A';
    if (d.precision >= 0)
        spec += "." + std::to_string(d.precision);
    else if (!hex)
        spec += ".6";
    spec += static_cast<char>(d.conversion);
    spec += '}';
    const std::string text = fmt::format(fmt::runtime(spec), v);
    std::size_t zeroAfter = std::wstring::npos;
    if (d.zero && !d.left && std::isfinite(v)) {
        zeroAfter = text[0] == '+' || text[0] == '-' || text[0] == ' ' ? 1 : 0;
        if (hex) zeroAfter += 2;
    }
    return pad(widen(text), d, zeroAfter);
}

std::wstring formatCharacter(const OxFormatArg& arg, const Directive& d) {
    if (arg.kind() == OxFormatArg::Kind::Wide || arg.kind() == OxFormatArg::Kind::Narrow) {
        return formatText(arg.asWide(), d);
    }
    const std::int64_t code = arg.asSigned();
    const bool valid = code > 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    Directive noPrecision = d;
    noPrecision.precision = -1;
    return pad(valid ? std::wstring(1, static_cast<wchar_t>(code)) : std::wstring(), noPrecision);
}

bool isText(const OxFormatArg& arg) {
    return arg.kind() == OxFormatArg::Kind::Wide || arg.kind() == OxFormatArg::Kind::Narrow;
}

// Renders one directive with its argument, converting a mismatched one.
std::wstring render(const Directive& d, const OxFormatArg& arg) {
    switch (d.conversion) {
    case L's':
    case L'S':
        return formatText(arg.asWide(), d);
    case L'c':
    case L'C':
        return formatCharacter(arg, d);
    case L'd':
    case L'i':
    case L'u':
    case L'x':
    case L'X':
    case L'o':
        if (isText(arg)) return formatText(arg.asWide(), d);
        if (arg.kind() == OxFormatArg::Kind::Real) return formatText(realText(arg.asReal()), d);
        return formatInteger(arg, d);
    case L'p':
        if (isText(arg)) return formatText(arg.asWide(), d);
        return formatText(arg.kind() == OxFormatArg::Kind::Pointer ? pointerText(arg.pointer())
                                                                   : widen(fmt::format("0x{:x}", arg.asUnsigned())),
                          Directive{d.left, false, false, false, false, d.width, -1, L's'});
    default: // f F e E g G a A
        if (isText(arg)) return formatText(arg.asWide(), d);
        return formatReal(arg.asReal(), d);
    }
}

bool isConversion(wchar_t c) {
    return c != 0 && std::wstring_view(L"sScCdiuxXopfFeEgGaA").find(c) != std::wstring_view::npos;
}

bool isLengthModifier(wchar_t c) {
    return c == L'h' || c == L'l' || c == L'L' || c == L'z' || c == L'j' || c == L't' || c == L'q';
}

class Formatter {
public:
    Formatter(std::wstring_view format, const OxFormatArg* args, std::size_t count)
        : m_format(format), m_args(args), m_count(args ? count : 0) {}

    std::wstring run() {
        while (m_pos < m_format.size()) {
            const std::size_t percent = m_format.find(L'%', m_pos);
            m_out.append(m_format.substr(m_pos, percent - m_pos));
            if (percent == std::wstring_view::npos) break;
            m_pos = percent;
            directive();
        }
        return std::move(m_out);
    }

private:
    wchar_t peek() const { return m_pos < m_format.size() ? m_format[m_pos] : 0; }

    const OxFormatArg* nextArg() { return m_next < m_count ? &m_args[m_next++] : nullptr; }

    // A width or precision: digits, or '*' taking an int argument. False
    // when the '*' has no argument left.
    bool number(int& value, bool& negative) {
        negative = false;
        if (peek() == L'*') {
            ++m_pos;
            const OxFormatArg* arg = nextArg();
            if (!arg) return false;
            const std::int64_t v = arg->asSigned();
            negative = v < 0;
            value = static_cast<int>(std::min<std::int64_t>(v < 0 ? -v : v, 100000));
            return true;
        }
        value = 0;
        while (peek() >= L'0' && peek() <= L'9') {
            value = std::min(value * 10 + (peek() - L'0'), 100000);
            ++m_pos;
        }
        return true;
    }

    // Parses the directive at m_pos (a '%') and writes its result; whatever
    // cannot be rendered is written as the text of the directive.
    void directive() {
        const std::size_t start = m_pos++;
        if (peek() == L'%') {
            ++m_pos;
            m_out += L'%';
            return;
        }
        Directive d;
        for (bool flag = true; flag;) {
            switch (peek()) {
            case L'-':
                d.left = true;
                break;
            case L'+':
                d.plus = true;
                break;
            case L' ':
                d.space = true;
                break;
            case L'#':
                d.alternate = true;
                break;
            case L'0':
                d.zero = true;
                break;
            default:
                flag = false;
                continue;
            }
            ++m_pos;
        }
        bool negative = false;
        bool complete = number(d.width, negative);
        if (negative) d.left = true;
        if (complete && peek() == L'.') {
            ++m_pos;
            complete = number(d.precision, negative);
            if (negative) d.precision = -1;
        }
        while (complete && isLengthModifier(peek()))
            ++m_pos;
        d.conversion = peek();
        if (complete && isConversion(d.conversion)) {
            ++m_pos;
            if (const OxFormatArg* arg = nextArg()) {
                m_out += render(d, *arg);
                return;
            }
        } else if (complete && d.conversion != 0) {
            ++m_pos; // an unknown conversion (%n, %k...) stays as text
        }
        m_out.append(m_format.substr(start, m_pos - start));
    }

    std::wstring_view m_format;
    const OxFormatArg* m_args;
    std::size_t m_count;
    std::size_t m_next = 0;
    std::size_t m_pos = 0;
    std::wstring m_out;
};

} // namespace

std::wstring oxFormatV(std::wstring_view format, const OxFormatArg* args, std::size_t count) {
    return Formatter(format, args, count).run();
}
