#include "tool/compare/lines.h"

#include <algorithm>
#include <unordered_map>

namespace {

// What is remembered of a search grows by the square of this.
constexpr int kMostEdits = 3000;
constexpr std::size_t kContext = 3;
constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

// The shortest way from one text to the other, by Myers' greedy search: `reach` holds for each
// diagonal how far so many edits lead, and `past` what it held before each edit.
class ShortestEdit {
public:
    ShortestEdit(std::vector<int> from, std::vector<int> to)
        : a(std::move(from)),
          b(std::move(to)),
          n(static_cast<int>(a.size())),
          m(static_cast<int>(b.size())),
          most(std::min(n + m, kMostEdits)),
          reach(static_cast<std::size_t>(2 * most + 3)) {}

    std::vector<CommonRun> Runs() {
        for (int edits = 0; edits <= most; ++edits) {
            const auto middle = reach.begin() + most + 1;
            past.emplace_back(middle - edits, middle + edits + 1);
            for (int diagonal = -edits; diagonal <= edits; diagonal += 2)
                if (Advance(edits, diagonal)) return Back(edits);
        }
        return {};
    }

private:
    int& Reach(int diagonal) { return reach[static_cast<std::size_t>(diagonal + most + 1)]; }
    int Past(int edits, int diagonal) const {
        return past[static_cast<std::size_t>(edits)][static_cast<std::size_t>(diagonal + edits)];
    }

    bool Advance(int edits, int diagonal) {
        const bool down =
            diagonal == -edits || (diagonal != edits && Reach(diagonal - 1) < Reach(diagonal + 1));
        int x = down ? Reach(diagonal + 1) : Reach(diagonal - 1) + 1;
        int y = x - diagonal;
        while (x < n && y < m && a[static_cast<std::size_t>(x)] == b[static_cast<std::size_t>(y)])
            ++x, ++y;
        Reach(diagonal) = x;
        return x >= n && y >= m;
    }

    std::vector<CommonRun> Back(int edits) const {
        std::vector<CommonRun> runs;
        int x = n;
        int y = m;
        for (; edits >= 0; --edits) {
            const int diagonal = x - y;
            const bool down =
                diagonal == -edits ||
                (diagonal != edits && Past(edits, diagonal - 1) < Past(edits, diagonal + 1));
            const int beforeX = edits == 0 ? 0 : Past(edits, down ? diagonal + 1 : diagonal - 1);
            const int start = edits == 0 ? 0 : beforeX + !down;
            if (x > start)
                runs.push_back({static_cast<std::size_t>(start),
                                static_cast<std::size_t>(start - diagonal),
                                static_cast<std::size_t>(x - start)});
            x = beforeX;
            y = beforeX - (down ? diagonal + 1 : diagonal - 1);
        }
        std::reverse(runs.begin(), runs.end());
        return runs;
    }

    std::vector<int> a;
    std::vector<int> b;
    int n;
    int m;
    int most;
    std::vector<int> reach;
    std::vector<std::vector<int>> past;
};

struct Gap {
    std::size_t a;
    std::size_t aEnd;
    std::size_t b;
    std::size_t bEnd;
};

std::vector<Gap> GapsBetween(const std::vector<CommonRun>& runs, const Lines& a, const Lines& b) {
    std::vector<Gap> gaps;
    std::size_t atA = 0;
    std::size_t atB = 0;
    const auto add = [&](std::size_t endA, std::size_t endB) {
        if (endA > atA || endB > atB) gaps.push_back({atA, endA, atB, endB});
    };
    for (const CommonRun& run : runs) {
        add(run.a, run.b);
        atA = run.a + run.count;
        atB = run.b + run.count;
    }
    add(a.size(), b.size());
    return gaps;
}

std::string Range(std::size_t first, std::size_t end) {
    // An empty range is told by the line before it.
    const std::size_t count = end - first;
    const std::string start = std::to_string(count == 0 ? first : first + 1);
    return count == 1 ? start : start + "," + std::to_string(count);
}

void AddLines(std::string& text, char mark, const Lines& lines, std::size_t at, std::size_t end) {
    for (; at < end; ++at) ((text += mark) += lines[at]) += '\n';
}

// For each line of the base its place in a side, or kNowhere.
std::vector<std::size_t> PlacesIn(const Lines& base, const Lines& side) {
    std::vector<std::size_t> places(base.size(), kNowhere);
    for (const CommonRun& run : CommonRuns(base, side))
        for (std::size_t i = 0; i < run.count; ++i) places[run.a + i] = run.b + i;
    return places;
}

Lines Part(const Lines& lines, std::size_t from, std::size_t to) {
    const auto begin = lines.begin();
    return {begin + static_cast<std::ptrdiff_t>(from), begin + static_cast<std::ptrdiff_t>(to)};
}

void Append(Lines& to, const Lines& lines) { to.insert(to.end(), lines.begin(), lines.end()); }

}  // namespace

Lines LinesOf(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        if (end == text.npos) return lines;
        text.remove_prefix(end + 1);
        if (text.empty()) lines.emplace_back();
    }
    return lines;
}

std::vector<CommonRun> CommonRuns(const Lines& a, const Lines& b) {
    const std::size_t shorter = std::min(a.size(), b.size());
    std::size_t head = 0;
    while (head < shorter && a[head] == b[head]) ++head;
    std::size_t tail = 0;
    while (head + tail < shorter && a[a.size() - 1 - tail] == b[b.size() - 1 - tail]) ++tail;
    std::unordered_map<std::string_view, int> numbers;
    const auto numbered = [&](const Lines& lines) {
        std::vector<int> result;
        for (std::size_t i = head; i < lines.size() - tail; ++i)
            result.push_back(
                numbers.emplace(lines[i], static_cast<int>(numbers.size())).first->second);
        return result;
    };
    std::vector<CommonRun> runs{{0, 0, head}};
    for (const CommonRun& run : ShortestEdit(numbered(a), numbered(b)).Runs())
        runs.push_back({run.a + head, run.b + head, run.count});
    runs.push_back({a.size() - tail, b.size() - tail, tail});
    return runs;
}

LineDiff DiffLines(std::string_view before, std::string_view after) {
    const Lines a = LinesOf(before);
    const Lines b = LinesOf(after);
    const std::vector<Gap> gaps = GapsBetween(CommonRuns(a, b), a, b);
    LineDiff diff;
    for (std::size_t first = 0; first < gaps.size();) {
        std::size_t last = first;
        while (last + 1 < gaps.size() && gaps[last + 1].a - gaps[last].aEnd <= 2 * kContext) ++last;
        const std::size_t lead = std::min(kContext, gaps[first].a);
        const std::size_t rest = std::min(kContext, a.size() - gaps[last].aEnd);
        diff.hunks += "@@ -" + Range(gaps[first].a - lead, gaps[last].aEnd + rest) + " +" +
                      Range(gaps[first].b - lead, gaps[last].bEnd + rest) + " @@\n";
        AddLines(diff.hunks, ' ', a, gaps[first].a - lead, gaps[first].a);
        for (std::size_t i = first; i <= last; ++i) {
            const Gap& gap = gaps[i];
            AddLines(diff.hunks, '-', a, gap.a, gap.aEnd);
            AddLines(diff.hunks, '+', b, gap.b, gap.bEnd);
            diff.removed += static_cast<int>(gap.aEnd - gap.a);
            diff.added += static_cast<int>(gap.bEnd - gap.b);
            AddLines(diff.hunks, ' ', a, gap.aEnd, i == last ? gap.aEnd + rest : gaps[i + 1].a);
        }
        first = last + 1;
    }
    return diff;
}

LineMerge MergeLines(std::string_view base, std::string_view ours, std::string_view theirs,
                     Favor favor) {
    const Lines b = LinesOf(base);
    const Lines o = LinesOf(ours);
    const Lines t = LinesOf(theirs);
    const std::vector<std::size_t> inOurs = PlacesIn(b, o);
    const std::vector<std::size_t> inTheirs = PlacesIn(b, t);
    Lines merged;
    LineMerge result;
    std::size_t atB = 0;
    std::size_t atO = 0;
    std::size_t atT = 0;
    for (;;) {
        // Up to the next line that all three have.
        std::size_t end = atB;
        while (end < b.size() && (inOurs[end] == kNowhere || inTheirs[end] == kNowhere)) ++end;
        const bool last = end == b.size();
        const Lines partB = Part(b, atB, end);
        const Lines partO = Part(o, atO, last ? o.size() : inOurs[end]);
        const Lines partT = Part(t, atT, last ? t.size() : inTheirs[end]);
        if (partO == partB || partO == partT) {
            Append(merged, partT);
        } else if (partT == partB) {
            Append(merged, partO);
        } else {
            result.conflicts.push_back(static_cast<int>(merged.size()) + 1);
            const bool marks = favor == Favor::kMarks;
            if (marks) merged.emplace_back("<<<<<<< ours");
            if (favor != Favor::kTheirs) Append(merged, partO);
            if (marks) merged.emplace_back("=======");
            if (favor != Favor::kOurs) Append(merged, partT);
            if (marks) merged.emplace_back(">>>>>>> theirs");
        }
        if (last) break;
        merged.push_back(b[end]);
        atB = end + 1;
        atO = inOurs[end] + 1;
        atT = inTheirs[end] + 1;
    }
    for (std::size_t i = 0; i < merged.size(); ++i) {
        if (i > 0) result.text += '\n';
        result.text += merged[i];
    }
    return result;
}
