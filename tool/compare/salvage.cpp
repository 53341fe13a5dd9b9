#include "tool/compare/salvage.h"

#include "engine/dfont.h"
#include "engine/dinterface.h"
#include "engine/open_archive.h"

#include <zlib.h>

#include <algorithm>
#include <streambuf>

namespace {

constexpr std::size_t kHeaderSize = 30;
constexpr std::size_t kRecordSize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::string_view kHeader = "PK\3\4";
constexpr std::string_view kRecord = "PK\1\2";
constexpr std::string_view kEnd = "PK\5\6";
constexpr std::string_view kSums = "PK\7\b";
constexpr int kStored = 0;
constexpr int kDeflated = 8;
constexpr unsigned kSizesFollow = 8;
constexpr std::size_t kMostTried = 8;  // of the entries that may be the same one
constexpr std::size_t kMostEntries = 256;

struct Entry {
    std::string name;  ///< in small letters
    int method = 0;
    bool sizesFollow = false;  ///< so its checksum stands behind it
    std::uint32_t checksum = 0;
    std::string_view data;  ///< to the archive's end, or as long as it is known to be
};

std::uint32_t NumberAt(std::string_view bytes, std::size_t at, int size) {
    std::uint32_t number = 0;
    while (size-- > 0)
        number =
            number << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(size)]);
    return number;
}

bool IsKnown(const std::string& name) {
    return name == "font.hdr" || name == "font.raw" || name == "res.dat" ||
           name.ends_with(".qlt") || name.ends_with(".obj");
}

// The entries that the directory tells of, then those with a header of their own that says
// something else: either may be the damaged one.
class EntryFinder {
public:
    explicit EntryFinder(std::string_view in) : archive(in) {
        const std::size_t end = archive.rfind(kEnd);
        if (end != archive.npos && end + kEndSize <= archive.size())
            shift = end - NumberAt(archive, end + 12, 4) - NumberAt(archive, end + 16, 4);
        Each(kRecord, kRecordSize, &EntryFinder::TakeRecord);
        Each(kHeader, kHeaderSize, &EntryFinder::TakeHeader);
    }

    std::vector<Entry> entries;

private:
    void Each(std::string_view signature, std::size_t size,
              void (EntryFinder::*take)(std::size_t)) {
        for (std::size_t at = archive.find(signature);
             at != archive.npos && at + size <= archive.size();
             at = archive.find(signature, at + signature.size()))
            (this->*take)(at);
    }

    // Of what stands before the data only the lengths matter, and they may be wrong.
    void TakeRecord(std::size_t at) {
        const std::size_t name = NumberAt(archive, at + 28, 2);
        for (const std::size_t moved : {shift, std::size_t{0}}) {
            const std::size_t header = NumberAt(archive, at + 42, 4) + moved;
            if (header >= archive.size() || archive.size() - header < kHeaderSize) continue;
            const std::size_t start = header + kHeaderSize + name;
            Take(at + 8, at + kRecordSize, start + NumberAt(archive, header + 28, 2), true);
            Take(at + 8, at + kRecordSize, start, true);
        }
    }

    void TakeHeader(std::size_t at) {
        const std::size_t name = at + kHeaderSize;
        Take(at + 6, name, name + NumberAt(archive, at + 26, 2) + NumberAt(archive, at + 28, 2),
             false);
    }

    // Headers and records tell the same in the same order from their flags on.
    void Take(std::size_t flags, std::size_t name, std::size_t start, bool inDirectory) {
        if (start > archive.size()) return;
        Entry entry;
        for (const char c : archive.substr(name, NumberAt(archive, flags + 20, 2)))
            entry.name += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        if (!IsKnown(entry.name) || entries.size() == kMostEntries) return;
        entry.sizesFollow = !inDirectory && (NumberAt(archive, flags, 2) & kSizesFollow) != 0;
        entry.method = static_cast<int>(NumberAt(archive, flags + 2, 2));
        entry.checksum = NumberAt(archive, flags + 8, 4);
        entry.data = archive.substr(start);
        if (entry.method == kStored && entry.sizesFollow)
            entry.data =
                entry.data.substr(0, std::min({entry.data.find(kSums), entry.data.find(kHeader),
                                               entry.data.find(kRecord)}));
        else if (entry.method == kStored)
            entry.data = entry.data.substr(0, NumberAt(archive, flags + 12, 4));
        const bool known = std::any_of(entries.begin(), entries.end(), [&](const Entry& other) {
            return entry.name == other.name && entry.method == other.method &&
                   entry.data.data() == other.data.data() &&
                   (entry.sizesFollow || entry.checksum == other.checksum);
        });
        if (!known) entries.push_back(entry);
    }

    std::string_view archive;
    std::size_t shift = 0;  ///< of all places that the directory tells, when the start is lost
};

constexpr std::uint64_t kMostRest = 1 << 24;
// Bytes that are unpacked of all entries of one name together, to choose between them.
constexpr std::uint64_t kMostSearched = 1 << 28;

// The unpacked bytes of an entry as a text, up to where unpacking fails.
class EntryText : public std::streambuf {
public:
    /// As if it ended where it has passed so many bytes.
    EntryText(const Entry& of, std::uint64_t most) : entry(of), limit(most) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(entry.data.data()));
        stream.avail_in = static_cast<uInt>(std::min<std::size_t>(entry.data.size(), UINT32_MAX));
        ready = entry.method == kStored ||
                (entry.method == kDeflated && inflateInit2(&stream, -MAX_WBITS) == Z_OK);
        opened = ready && entry.method == kDeflated;
    }
    EntryText(const EntryText&) = delete;
    EntryText& operator=(const EntryText&) = delete;
    ~EntryText() override {
        if (opened) inflateEnd(&stream);
    }

    /// After reading to the end, unless it is more than so many bytes away: everything was there,
    /// and as its checksum says.
    bool Whole(std::uint64_t most = kMostRest) {
        for (const std::uint64_t end = unpacked + most; unpacked < end && Unpack() > 0;) {
        }
        if (!entry.sizesFollow) return ended && checksum == entry.checksum;
        const std::string_view rest(reinterpret_cast<const char*>(stream.next_in), stream.avail_in);
        const bool told = rest.starts_with(kSums) && rest.size() >= 2 * kSums.size();
        return ended && (!told || checksum == NumberAt(rest, kSums.size(), 4));
    }
    /// Bytes that were unpacked so far.
    std::uint64_t Size() const { return unpacked; }

protected:
    int_type underflow() override {
        std::size_t kept = 0;
        while (kept == 0) {
            const std::size_t got = Unpack();
            if (got == 0 && !heldReturn) return traits_type::eof();
            if (heldReturn && (got == 0 || piece[0] != '\n')) text[kept++] = '\r';
            heldReturn = got > 0 && piece[got - 1] == '\r';
            for (std::size_t i = 0; i < got; ++i)
                if (piece[i] != '\r' || (i + 1 < got && piece[i + 1] != '\n'))
                    text[kept++] = piece[i];
        }
        setg(text, text, text + kept);
        return traits_type::to_int_type(*gptr());
    }

private:
    std::size_t Unpack() {
        if (!ready || ended || unpacked > limit) return 0;
        std::size_t got = 0;
        if (entry.method == kStored) {
            got = std::min<std::size_t>(stream.avail_in, sizeof piece);
            std::copy_n(stream.next_in, got, piece);
            stream.next_in += got;
            stream.avail_in -= static_cast<uInt>(got);
            ended = stream.avail_in == 0;
        } else {
            stream.next_out = reinterpret_cast<Bytef*>(piece);
            stream.avail_out = sizeof piece;
            const int result = inflate(&stream, Z_SYNC_FLUSH);
            got = sizeof piece - stream.avail_out;
            ended = result == Z_STREAM_END;
            ready = result == Z_OK;
        }
        unpacked += got;
        checksum = crc32(checksum, reinterpret_cast<const Bytef*>(piece), static_cast<uInt>(got));
        return got;
    }

    const Entry& entry;
    const std::uint64_t limit;
    std::uint64_t unpacked = 0;
    z_stream stream = {};
    char piece[1 << 16];
    char text[sizeof piece + 1];  ///< the same with line feeds alone
    bool heldReturn = false;
    uLong checksum = 0;
    bool ready = false;
    bool opened = false;
    bool ended = false;
};

IdSource CountedIds() {
    return [last = std::int32_t{0}]() mutable { return ++last; };
}

void SortAll(Dobject& node) {
    SortByZ(node);
    for (const auto& child : node.children) SortAll(*child);
}

class Salvager {
public:
    Salvager(std::string_view archive, Salvage& to)
        : entries(EntryFinder(archive).entries), result(to) {
        const Entry* object = Find(".obj");
        const Entry* text = Find(".qlt");
        result.object = object && !text && !Find("font.hdr");
        result.empty = entries.empty();
        if (result.empty) return;
        if (!result.object) {
            Sheet();
            Settings();
        }
        if (const Entry* world = result.object ? object : text)
            World(*world);
        else
            Miss("the world: there is no entry of it");
    }

private:
    void Miss(const std::string& what) { result.missing.push_back(what); }

    // By the end of its name; of several the first that is whole, else the one with most in it.
    const Entry* Find(std::string_view name) const {
        std::vector<const Entry*> found;
        for (const Entry& entry : entries)
            if (entry.name.ends_with(name) && found.size() < kMostTried) found.push_back(&entry);
        if (found.size() < 2) return found.empty() ? nullptr : found[0];
        const Entry* best = nullptr;
        std::uint64_t left = kMostSearched;
        for (std::uint64_t most = 0; const Entry* entry : found) {
            EntryText text(*entry, kMaxText);
            if (text.Whole(left)) return entry;
            left -= std::min(left, text.Size());
            if (best && text.Size() <= most) continue;
            best = entry;
            most = text.Size();
        }
        return best;
    }

    void Sheet() {
        const Entry* header = Find("font.hdr");
        const Entry* pixels = Find("font.raw");
        std::int32_t size[3] = {};
        bool good = header != nullptr;
        if (header) {
            EntryText text(*header, kMaxNumbers);
            TextScanner scanner(text);
            for (std::int32_t& number : size)
                good = good && scanner.Number(number) == TextScanner::Status::kGood;
            good = good && IsSheetSize(size[0], size[1]);
        }
        if (!good) return Miss("the sheet: its size is not there");
        Bitmap& sheet = result.game.sheet;
        sheet = MakeBitmap(size[0], size[1]);
        if (!sheet) return Miss("the sheet: there is not enough memory");
        result.game.sheetFormat = size[2];
        if (!pixels) return Miss("the sheet's pixels: there is no entry of them");
        int read = 0;
        const int all = size[0] * size[1];
        EntryText text(*pixels, kMaxNumbers + kMaxNumber * static_cast<unsigned>(all));
        constexpr int kNumbers = 2;
        while (read < all &&
               Pixel(text, size[2] == kNumbers, sheet->line[read / size[0]][read % size[0]]))
            ++read;
        if (read < all)
            Miss("the sheet: " + std::to_string(all - read) + " of its " + std::to_string(all) +
                 " pixels");
        else if (!text.Whole())
            Miss("the sheet: its data are damaged");
    }

    static bool Pixel(std::streambuf& text, bool number, unsigned char& pixel) {
        std::int32_t value = -1;
        if (number) {
            if (TextScanner(text).Number(value) != TextScanner::Status::kGood) return false;
        } else {
            do value = text.sbumpc();
            while (TextScanner::IsSpace(value));
        }
        pixel = static_cast<unsigned char>(value);
        return value >= 0 && value <= UINT8_MAX;
    }

    void Settings() {
        const Entry* entry = Find("res.dat");
        if (!entry) return Miss("the video settings");
        EntryText text(*entry, kMaxNumbers);
        TextScanner scanner(text);
        std::int32_t mode = 0;
        std::int32_t windowed = 0;
        if (scanner.Number(mode) != TextScanner::Status::kGood ||
            scanner.Number(windowed) != TextScanner::Status::kGood || !text.Whole())
            return Miss("the video settings");
        result.game.videoMode = mode;
        result.game.windowed = windowed;
    }

    void World(const Entry& entry) {
        EntryText text(entry, kMaxText);
        GameTextReader reader(text, CountedIds());
        Dobject& root = result.game.root;
        result.game.hasText = true;
        result.game.textEntry = entry.name;
        bool read = false;
        if (result.object)
            read = reader.TakeObjectWord() && ReadOne(reader, root);
        else
            read = reader.ReadWorld(root);
        if (!read) {
            const std::string why = reader.Reason().empty() ? "no object begins" : reader.Reason();
            Miss(entry.name + " from line " + std::to_string(reader.Line()) + " on: " + why);
            if (reader.CutNode()) Mend(*reader.CutNode());
        }
        if (read && !text.Whole()) Miss(entry.name + ": its data are damaged");
        SortAll(root);
    }

    // As a child that stays when it is cut off.
    static bool ReadOne(GameTextReader& reader, Dobject& root) {
        root.children.push_back(std::make_unique<Dobject>(1));
        root.children.back()->parent = &root;
        return reader.ReadInto(*root.children.back());
    }

    // The node that the text ends in: blank where its grid is not known, gone when nothing is.
    void Mend(Dobject& node) {
        const std::size_t have = node.tiles.size();
        if (have == 0) {
            Miss(Quoted(node.name) + " with all in it");
            node.parent->children.pop_back();
            return;
        }
        const auto cells = static_cast<std::size_t>(std::int64_t{node.width} * node.height);
        if (have < cells)
            Miss("the last " + std::to_string(cells - have) + " of " + std::to_string(cells) +
                 " cells of " + Quoted(node.name) + ", and its script");
        else
            Miss("the end of the script of " + Quoted(node.name));
        node.tiles.resize(cells, kBlankTile);
    }

    std::vector<Entry> entries;
    Salvage& result;
};

}  // namespace

void SalvageGame(std::string_view archive, Salvage& to) { Salvager(archive, to); }

bool ReadObjectArchive(std::string_view archive, Game& game, std::string& why) {
    Salvage salvage;
    SalvageGame(archive, salvage);
    if (!salvage.object)
        why = "there is no world in this archive";
    else if (!salvage.missing.empty())
        why = salvage.missing.front();
    else
        game.root.children.swap(salvage.game.root.children);
    for (const auto& child : game.root.children) child->parent = &game.root;
    return why.empty();
}
