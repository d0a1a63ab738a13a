// Prints docs/reference.md: every operation of families.def, with an index, all bounds at a glance, prototypes
// and special values.
#include "quevar/shapes.def"
#include <cctype>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

using text = std::string;

struct Family {
    text mark, tier, arguments, results, a, r, p;
    bool pointer;
    double bound;

    bool is_double() const { return mark.empty(); }
};
struct Operation {
    text base, what, argument, special;
    std::vector<Family> families;

    bool is_conversion() const { return base.starts_with("cvt"); }
    bool is_integer() const { return !families[0].a.starts_with('f') && !families[0].r.starts_with('f'); }
};

// ---- The list ----

#define TEXT(word) TEXT_(word)
#define TEXT_(word) #word

std::vector<Operation> read_list() {
    std::vector<Operation> list;
#define QUEVAR_OPERATION(base, what, argument, special) list.push_back({#base, what, argument, special, {}});
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    list.back().families.push_back({#mark, #tier, TEXT(QUEVAR_SHAPE_ARGUMENTS(shape)),                       \
                                    TEXT(QUEVAR_SHAPE_RESULTS(shape)), #A, #R, #P,                           \
                                    QUEVAR_SHAPE_POINTER(shape) == 1, bound});
#include "quevar/families.def"
#undef QUEVAR_FAMILY
    return list;
}

// ---- Words ----

text replaced(text where, std::string_view what, std::string_view by) {
    for (size_t at = 0; (at = where.find(what, at)) != text::npos; at += by.size())
        where.replace(at, what.size(), by);
    return where;
}

// As markdown: signs and infinity as such, tiers as code, and no bar that would end a cell.
text typeset(text s) {
    s = replaced(s, "+-", "±");
    for (size_t at = 0; (at = s.find("inf", at)) != text::npos; at++)
        if (at + 3 == s.size() || !std::isalpha(static_cast<unsigned char>(s[at + 3]))) s.replace(at, 3, "∞");
    for (const char *tier : {"_native", "_half", "_rm"}) s = replaced(s, tier, "`" + text(tier) + "`");
    return replaced(s, "|", "\\|");
}

std::vector<text> split(const text &s, std::string_view separator) {
    std::vector<text> parts;
    size_t begin = 0, end;
    while ((end = s.find(separator, begin)) != text::npos) {
        parts.push_back(s.substr(begin, end - begin));
        begin = end + separator.size();
    }
    parts.push_back(s.substr(begin));
    return parts;
}

// With a capital, if it begins with a word.
text sentence(text s) {
    if (std::isalpha(static_cast<unsigned char>(s[1]))) s[0] = static_cast<char>(std::toupper(s[0]));
    return typeset(s) + ".";
}

text bound_of(const Family &family) {
    if (family.bound == 0) return "exact";
    char s[32];
    std::snprintf(s, sizeof s, "%g", family.bound);
    return s;
}

// ---- Prototypes ----

int size_of(const text &element) { return element.ends_with("64") ? 8 : 4; }

// The lanes of one 256-bit vector of the widest element.
int width_of(const Family &family) {
    bool wide = size_of(family.a) == 8 || size_of(family.r) == 8;
    if (family.pointer) wide |= size_of(family.p) == 8;
    return wide ? 4 : 8;
}

text prototype(const Operation &operation, const Family &family) {
    const text lanes = "x" + std::to_string(width_of(family)), A = "quevar_" + family.a + lanes,
               R = "quevar_" + family.r + lanes;
    const bool pair = family.results == "pair";
    text s = R + (pair ? "_pair" : "") + " __quevar_" + operation.base + family.mark + lanes.substr(1) +
             family.tier + "(" + A + " x";
    if (family.arguments == "2" || family.arguments == "3") s += ", " + A + " y";
    if (family.arguments == "3") s += ", " + A + " z";
    if (family.arguments == "1i") s += ", quevar_i32" + lanes + " n";
    if (family.pointer) s += ", quevar_" + family.p + lanes + "_out *p";
    return s + ")";
}

// ---- The page ----

void print_index(const std::vector<Operation> &list) {
    std::puts("## Index\n");
    text line;
    for (const Operation &operation : list) {
        if (operation.is_conversion()) continue;
        const text link = "[" + operation.base + "](#" + operation.base + ")";
        if (line.size() + link.size() > 118) {
            std::puts(line.c_str());
            line.clear();
        }
        line += (line.empty() ? "" : " ") + link;
    }
    std::printf("%s\n[conversions](#conversions)\n", line.c_str());
}

// What each operation promises at each tier.
void print_overview(const std::vector<Operation> &list) {
    constexpr const char *tiers[] = {"", "_native", "_half", "_rm"};
    std::puts(
        "\n## Bounds at a glance\n\n"
        "The largest error in ulps of the exact value, over all arguments and widths; exact: exact or "
        "correctly\n"
        "rounded, as are all conversions and the division of integers. A blank: there is no such family.\n\n"
        "| operation | float | float `_native` | float `_half` | float `_rm` | double | double `_native` |\n"
        "|---|--:|--:|--:|--:|--:|--:|");
    for (const Operation &operation : list) {
        if (operation.is_conversion() || operation.is_integer()) continue;
        text cells[6];
        for (const Family &family : operation.families)
            for (int tier = 0; tier < 4; tier++)
                if (family.tier == tiers[tier]) cells[(family.is_double() ? 4 : 0) + tier] = bound_of(family);
        std::printf("| [%s](#%s) |", operation.base.c_str(), operation.base.c_str());
        for (const text &cell : cells) std::printf(" %s |", cell.c_str());
        std::puts("");
    }
}

// "arguments: result" as rows, the first colon parting them.
void print_special_values(const Operation &operation) {
    if (operation.special == "none") return;
    const Family &family = operation.families.front();
    const char *head = family.arguments == "1"    ? "x"
                       : family.arguments == "1i" ? "x, n"
                       : family.arguments == "2"  ? "x, y"
                                                  : "x, y, z";
    std::printf("| %s | result |\n|---|---|\n", head);
    for (const text &row : split(operation.special, "; ")) {
        const size_t colon = row.find(": ");
        if (colon == text::npos) std::printf("| | %s |\n", typeset(row).c_str());
        else
            std::printf("| %s | %s |\n", typeset(row.substr(0, colon)).c_str(),
                        typeset(row.substr(colon + 2)).c_str());
    }
    std::puts("");
}

void print_operation(const Operation &operation) {
    std::printf("\n### %s\n\n%s\n", operation.base.c_str(), sentence(operation.what).c_str());
    if (operation.argument != "all") std::printf("\nArguments: %s.\n", typeset(operation.argument).c_str());
    std::puts("");
    print_special_values(operation);
    std::puts("| prototype at one 256-bit vector | bound, ulps |\n|---|--:|");
    for (const Family &family : operation.families)
        std::printf("| `%s` | %s |\n", prototype(operation, family).c_str(), bound_of(family).c_str());
}

// A conversion's base without its rounding mode: cvtfptoi32rtesat is that of cvtfptoi32 and sat.
struct Conversion {
    text stem, mode, rest;
};
constexpr const char *modes[] = {"rte", "rtn", "rtp", "rtz"};
Conversion conversion(const text &base) {
    for (const char *mode : modes)
        for (size_t at = base.rfind(mode); at != text::npos;)
            return {base.substr(0, at), mode, base.substr(at + 3)};
    return {base, "", ""};
}

void print_conversions(const std::vector<Operation> &list) {
    std::puts("\n## Conversions\n\n"
              "Each under four rounding modes, named by `rte` (to nearest, ties to even), `rtn` (toward -∞), "
              "`rtp` (toward\n"
              "+∞) and `rtz` (toward zero), and exact in the sense of that mode. r is the argument rounded "
              "to a whole\n"
              "number; `sat` gives the nearest number of the target type where r is outside its range. A "
              "prototype:\n"
              "`quevar_i32x4 __quevar_cvtfptoi32rtesat4(quevar_f64x4 x)`.\n\n"
              "| from | to | `rte` | `rtn` | `rtp` | `rtz` | r | other arguments |\n"
              "|---|---|---|---|---|---|---|---|");
    struct Row {
        text from, to, names[4], argument, special;
    };
    std::vector<Row> rows;
    std::map<text, size_t> place; // in rows, by name without mode
    for (const Operation &operation : list) {
        if (!operation.is_conversion()) continue;
        const Conversion c = conversion(operation.base);
        for (const Family &family : operation.families) {
            const auto [found, added] = place.try_emplace(c.stem + c.rest + family.mark, rows.size());
            if (added)
                rows.push_back({family.a,
                                family.r + (c.rest == "sat" ? ", saturated" : ""),
                                {},
                                operation.argument,
                                operation.special});
            for (int mode = 0; mode < 4; mode++)
                if (c.mode == modes[mode]) rows[found->second].names[mode] = operation.base + family.mark;
        }
    }
    for (const Row &row : rows) {
        std::printf("| %s | %s |", row.from.c_str(), row.to.c_str());
        for (const text &name : row.names) std::printf(" `%s` |", name.c_str());
        std::printf(" %s | %s |\n", typeset(row.argument).c_str(),
                    row.special == "none" ? "" : typeset(row.special).c_str());
    }
}

} // namespace

int main() {
    const std::vector<Operation> list = read_list();
    size_t families = 0;
    for (const Operation &operation : list) families += operation.families.size();
    std::printf(
        "# Reference\n\n"
        "Made by `quevar_reference` from `families.def`: %zu families of six members each. A member's name "
        "is\n"
        "`__quevar_`, the operation with `f` for float, the width 1, 2, 3, 4, 8 or 16, and the tier:\n"
        "`__quevar_expf8_native`. `quevar.h` tells how each width is passed; the prototypes here are those "
        "of one\n"
        "256-bit vector, all others are in `members.h`.\n\n"
        "In the tables of special values ± stands for the same sign on both sides. \"Quieted\" is that NaN "
        "with its\n"
        "quiet bit set, sign and payload kept; NaN without more is a quiet one. A number is anything but "
        "NaN; \"signs\n"
        "multiplied\" is negative where one of the two arguments has its sign set and the other has not. "
        "\"Odd\",\n"
        "\"even\" and \"whole\" are whole numbers; \"other\" is everything that the rows above it leave.\n\n",
        families);
    print_index(list);
    print_overview(list);
    std::puts("\n## Operations");
    for (const Operation &operation : list)
        if (!operation.is_conversion()) print_operation(operation);
    print_conversions(list);
}
