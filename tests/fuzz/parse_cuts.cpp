// The parser on a text in one piece and cut up: the compact code is well-formed, and the same. Steering bytes: whether
// it is parsed with a trace too and how often the text is repeated (a block is larger than an input), then the lengths
// of the pieces.
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "hpgl/compact_code_reader.h"
#include "hpgl/parser.h"
#include "trace_into_nothing.h"

namespace {

constexpr int32_t MOST_REPEATS = 24;

void checkReader(const CBlock& block, CompactCodePass pass) {
    CompactCodeReader reader = HPGLreadBlock(&block, pass);
    CompactCodeRecord record;
    for (const uint8_t* before = reader.at; HPGLreadRecord(&reader, &record); before = reader.at) {
        require(before <= record.start && record.start + 2 <= reader.at && reader.at <= reader.end, "records advance");
    }
}

void checkBlock(const CBlock& block) {
    require(block.Size == HPGL_BLOCK_SIZE, "a block's size");
    require(block.Occupied >= 0 && block.Occupied < HPGL_BLOCK_SIZE, "a block is never full");
    require(block.actPnt == block.Data + block.Occupied, "actPnt stands behind the last byte");
    require(block.commandStart == nullptr || (block.Data <= block.commandStart && block.commandStart <= block.actPnt),
            "the open record lies in the block");
    checkReader(block, CompactCodePass::Setup);
    checkReader(block, CompactCodePass::Drawing);
}

class Parsed {
  public:
    Parsed() = default;
    ~Parsed() { HPGLdestroyParser(parser_); }
    Parsed(const Parsed&) = delete;
    Parsed& operator=(const Parsed&) = delete;

    // A piece stands in memory of exactly its size.
    void parse(std::string_view piece) {
        const std::vector<char> bytes(piece.begin(), piece.end());
        consumed_ = HPGLparseCode(parser_, bytes.data(), static_cast<int64_t>(bytes.size())) != 0 && consumed_;
    }

    // Every block's bytes, checked.
    std::vector<std::string> blocks() {
        std::vector<std::string> all;
        void* data = nullptr;
        HPGLgotoFirst(parser_->blocks);
        for (bool more = HPGLgetActualListData(parser_->blocks, &data, nullptr, nullptr); more;
             more = HPGLgetNextListData(parser_->blocks, &data, nullptr, nullptr)) {
            const CBlock& block = *static_cast<const CBlock*>(data);
            checkBlock(block);
            all.emplace_back(block.Data, block.Data + block.Occupied);
        }
        return all;
    }

    // Behind a name that fails, or in a file's name, cuts show.
    bool mayBeCut() const { return consumed_ && parser_->global->fileName == nullptr; }

  private:
    ParseInt* parser_ = HPGLinitParser();
    bool consumed_ = true;
};

// Whether cuts must not show: a pen number of an encoded polyline that is cut does.
bool cutsAreInvisible(const Parsed& whole, std::string_view text) {
    return whole.mayBeCut() && text.find(':') == text.npos;
}

std::vector<std::string> tracedBlocks(std::string_view text) {
    const TraceIntoNothing trace;
    Parsed parsed;
    parsed.parse(text);
    return parsed.blocks();
}

std::string repeated(std::string_view text, int32_t times) {
    std::string all;
    for (int32_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    const uint8_t flags = input.byte(0);
    const std::string text = repeated(input.text(), 1 + flags / 2 % MOST_REPEATS);
    Parsed whole;
    whole.parse(text);
    const std::vector<std::string> blocks = whole.blocks();
    Parsed pieces;
    pieces.parse({});
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view piece = rest.substr(0, input.byte(static_cast<uint8_t>(1 + text.size() % 64)));
        pieces.parse(piece);
        rest.remove_prefix(piece.size());
    }
    require(pieces.blocks() == blocks || !cutsAreInvisible(whole, text), "cuts are invisible");
    if (flags % 2 == 1) require(tracedBlocks(text) == blocks, "the trace changes nothing");
    return 0;
}
