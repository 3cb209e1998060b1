#include "Core/Codec.h"
#include "Features/Flows/FlowFields.h"
#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/FlowRun.h"

#include <cstdlib>

/// A flow that somebody sent may be anything; what can be read must be checked, shown and changed without harm.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    vh::flows::piecesOf(text);
    try {
        const auto flow = vh::decodeJson<vh::flows::Flow>(text);
        vh::flows::problems(flow);
        for (const auto& node : flow.nodes) {
            flow.ancestors(node.id);
            flow.computers(node.id);
            for (const auto& field : vh::flows::fieldsOf(node)) {
                auto copy = node;
                if (vh::flows::setField(copy, field.key, field.value))
                    vh::flows::fieldsOf(copy);
            }
        }
        const std::string written = vh::encodeJson(flow);
        if (vh::encodeJson(vh::decodeJson<vh::flows::Flow>(written)) != written)
            std::abort();
    } catch (const vh::DecodeError&) {
    }
    return 0;
}
