#include "templates/template.h"

#include "app/settingsvalues.h"
#include "cog/layout.h"

#include <unordered_map>

namespace templates {

namespace {

// Walks the header line by line; a line ends at CR LF.
class LineReader {
public:
    explicit LineReader(std::string_view bytes) : bytes_(bytes) {}

    // The next line without its CR LF; false at the end of the file.
    bool next(std::string_view& line) {
        if (pos_ >= bytes_.size()) return false;
        const auto end = bytes_.find("\r\n", pos_);
        if (end == std::string_view::npos) {
            line = bytes_.substr(pos_);
            pos_ = bytes_.size();
        } else {
            line = bytes_.substr(pos_, end - pos_);
            pos_ = end + 2;
        }
        ++number_;
        return true;
    }
    long number() const { return number_; }

private:
    std::string_view bytes_;
    std::size_t pos_ = 0;
    long number_ = 0;
};

// A piece of the file quoted in a message, cut short when long.
std::string quoted(std::string_view s) {
    constexpr std::size_t kMax = 40;
    std::string q = "\"";
    q += s.substr(0, kMax);
    q += s.size() > kMax ? "...\"" : "\"";
    return q;
}

ReadResult failure(long line, std::string problem) {
    ReadResult r;
    r.error = {line, std::move(problem)};
    return r;
}

// The column count: a bare decimal number, written as the number reads back, so that its
// length counts the line exactly.
bool parseCount(std::string_view text, long& n) {
    std::string_view digits = text;
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative) digits.remove_prefix(1);
    if (digits.empty() || digits.size() > 9) return false;
    if (digits.size() > 1 && digits.front() == '0') return false;
    if (negative && digits == "0") return false;
    long v = 0;
    for (char c : digits) {
        if (c < '0' || c > '9') return false;
        v = v * 10 + (c - '0');
    }
    n = negative ? -v : v;
    return true;
}

// "1 field, 3 needed", "2 column titles, 3 needed".
std::string fieldsProblem(int have, int need, std::string_view what) {
    return std::to_string(have) + " " + std::string(what) + (have == 1 ? "" : "s") + ", " +
           std::to_string(need) + " needed";
}

} // namespace

std::string TemplateError::describe() const {
    return "line " + std::to_string(line) + ": " + problem;
}

int fieldCount(std::string_view line) {
    int n = 1;
    for (char c : line)
        if (c == ',') ++n;
    return n;
}

void SplitFields(int n, std::vector<std::string>& fields, std::string_view line) {
    if (n <= 0) return;
    if (fields.size() < static_cast<std::size_t>(n)) fields.resize(static_cast<std::size_t>(n));
    std::size_t from = 0;
    for (int i = 0; i < n; ++i) {
        auto& field = fields[static_cast<std::size_t>(i)];
        if (from > line.size()) {
            field.clear();
            continue;
        }
        const auto comma = i == n - 1 ? std::string_view::npos : line.find(',', from);
        if (comma == std::string_view::npos) {
            field.assign(line.substr(from));
            from = line.size() + 1;
        } else {
            field.assign(line.substr(from, comma - from));
            from = comma + 1;
        }
    }
}

ReadResult readTemplate(std::string_view bytes) {
    LineReader lines(bytes);
    std::string_view line;
    Template t;
    std::unordered_map<std::string, std::size_t> rowByName; // folded name -> its row

    if (!lines.next(line)) return failure(1, "the file is empty");
    long n = 0;
    if (!parseCount(line, n) && line.find('\n') != std::string_view::npos)
        return failure(1, "the lines do not end in CR LF");
    if (!parseCount(line, n))
        return failure(1, "the column count " + quoted(line) + " is not a bare whole number");
    if (n < 2) return failure(1, "the column count " + std::to_string(n) + " is below 2");
    t.columns = static_cast<int>(n);
    t.ilen = static_cast<long>(line.size()) + 2;

    if (!lines.next(line)) return failure(2, "the file ends before the column titles");
    t.ilen += static_cast<long>(line.size()) + 2;
    if (fieldCount(line) < t.columns)
        return failure(2, fieldsProblem(fieldCount(line), t.columns, "column title"));
    SplitFields(t.columns, t.titles, line);

    for (;;) {
        if (!lines.next(line)) return failure(lines.number() + 1, "the file ends without an end line");
        t.ilen += static_cast<long>(line.size()) + 2;
        if (cog::equalText(line, "end")) break;
        if (fieldCount(line) < t.columns)
            return failure(lines.number(), fieldsProblem(fieldCount(line), t.columns, "field"));
        Parameter p;
        SplitFields(t.columns, p.fields, line);
        p.value = p.fields[0];
        p.name = p.fields[1];
        const auto [earlier, fresh] = rowByName.try_emplace(cog::foldedText(p.name), t.rows.size());
        if (!fresh)
            return failure(lines.number(), "the parameter name " + quoted(p.name) + " repeats line " +
                                               std::to_string(static_cast<long>(earlier->second) + 3));
        t.rows.push_back(std::move(p));
    }
    ReadResult r;
    r.tmpl = std::move(t);
    return r;
}

std::string_view templateBody(std::string_view bytes, long ilen) {
    if (ilen <= 0) return bytes;
    if (static_cast<std::size_t>(ilen) >= bytes.size()) return {};
    return bytes.substr(static_cast<std::size_t>(ilen));
}

std::string replacePlaceholder(std::string_view text, std::string_view name, std::string_view value) {
    const std::string placeholder = "<%" + std::string(name) + "%>";
    const auto length = static_cast<cog::Pos>(placeholder.size());
    std::string out;
    cog::Pos start = 1;
    for (cog::Pos p = cog::find(start, text, placeholder); p != 0; p = cog::find(start, text, placeholder)) {
        if (out.empty()) out.reserve(text.size());
        out.append(text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(p - start)));
        out.append(value);
        start = p + length;
    }
    out.append(text.substr(static_cast<std::size_t>(start - 1)));
    return out;
}

std::string generate(std::string_view bytes, long ilen, const std::vector<Assignment>& assignments) {
    std::string text(templateBody(bytes, ilen));
    for (const auto& [name, value] : assignments) text = replacePlaceholder(text, name, value);
    return text;
}

std::vector<Assignment> defaultAssignments(const Template& tmpl) {
    std::vector<Assignment> a;
    a.reserve(tmpl.rows.size());
    for (const auto& row : tmpl.rows) a.emplace_back(row.name, row.value);
    return a;
}

std::vector<double> columnWidths(const std::vector<double>& titleWidths, double listWidth, double reserve) {
    std::vector<double> widths;
    widths.reserve(titleWidths.size());
    double w = 0;
    for (std::size_t i = 0; i < titleWidths.size(); ++i) {
        widths.push_back(i + 1 == titleWidths.size() ? listWidth - w - reserve : titleWidths[i]);
        w = static_cast<double>(settings::roundHalfEven(w + titleWidths[i]));
    }
    return widths;
}

} // namespace templates
