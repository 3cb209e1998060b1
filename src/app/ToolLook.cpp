#include "app/ToolLook.h"

#include "Core/ToolCatalog.h"
#include "app/AppTexts.h"

namespace vh::app {

QString toolIcon(std::string_view toolID) {
    const ToolDescriptor* tool = ToolCatalog::tool(toolID);
    return tool ? qtText(tool->sfSymbolName) : QStringLiteral("bolt");
}

} // namespace vh::app
