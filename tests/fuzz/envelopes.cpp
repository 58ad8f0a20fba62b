// What stands around a plot: compression, second bytes, job language, escapes. Every step goes on, and ends inside.
#include "fuzz_target.h"
#include "plotter/escapes.h"
#include "plotter/file_bytes.h"
#include "plotter/job_control.h"
#include "plotter/plotter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    plotter::foreignKind(file);
    plotter::isPlain(file);
    const plotter::PreparedBytes prepared = plotter::prepareBytes(file);
    const std::string_view bytes = prepared.bytes;
    for (std::size_t at = 0; at < bytes.size();) {
        if (bytes[at] != 27) {
            plotter::Job job;
            const std::size_t behind = plotter::readJobLines(bytes, at, job);
            require(behind >= at && behind <= bytes.size(), "job lines end inside");
            ++at;
            continue;
        }
        plotter::EscapeReader reader(bytes, at);
        plotter::EscapeField field;
        while (reader.next(field)) {
            require(field.data.empty() || (field.data.data() >= bytes.data() &&
                                           field.data.data() + field.data.size() <= bytes.data() + bytes.size()),
                    "binary data lie inside");
        }
        require(reader.end() > at && reader.end() <= bytes.size(), "an escape ends inside, behind its beginning");
        at = reader.end();
    }
    return 0;
}
