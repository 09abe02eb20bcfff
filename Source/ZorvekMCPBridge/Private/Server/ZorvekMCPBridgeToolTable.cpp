#include "Server/ZorvekMCPBridgeToolCatalogue.h"

const TArray<FZorvekMCPBridgeToolDefinition>& ZorvekMCPBridgeTools::GetToolTable()
{
	static const TArray<FZorvekMCPBridgeToolDefinition> Table;
	return Table;
}
