#include "app/ToolLook.h"

#include "Core/ToolCatalog.h"
#include "app/AppTexts.h"

namespace vh::app {

QString toolIcon(std::string_view toolID) {
    if (toolID == "nodes")
        return QStringLiteral("point.topleft.down.to.point.bottomright");
    const ToolDescriptor* tool = ToolCatalog::tool(toolID);
    return tool ? qtText(tool->sfSymbolName) : QStringLiteral("bolt");
}

} // namespace vh::app
