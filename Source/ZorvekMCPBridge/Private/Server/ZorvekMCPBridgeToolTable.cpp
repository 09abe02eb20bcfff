#include "Server/ZorvekMCPBridgeToolCatalogue.h"

#include "Tools/ZorvekMCPBridgeAssetTools.h"

const TArray<FZorvekMCPBridgeToolDefinition>& ZorvekMCPBridgeTools::GetToolTable()
{
	static const TArray<FZorvekMCPBridgeToolDefinition> Table = {
		{
			TEXT("unreal_resolve_asset"),
			TEXT("Resolve an asset name or partial path to candidate Unreal asset paths."),
			{
				{TEXT("name_or_path"), TEXT("Asset name, keyword, or full Unreal asset path."), EZorvekMCPBridgeParameterForm::Text, true},
				{TEXT("type"), TEXT("Asset type filter such as Blueprint, Material, Any. Defaults to Blueprint.")},
				{TEXT("limit"), TEXT("Maximum candidates to return. Defaults to 10.")},
			},
			&ZorvekMCPBridgeAssetTools::HandleResolveAsset,
		},
		{
			TEXT("unreal_inspect_asset"),
			TEXT("Read-only inspection for any UObject asset: identity, class, package, editable/public properties, object references, and partial failures."),
			{
				{TEXT("AssetNameOrPath"), TEXT("Asset name, keyword, full package path, or full object path."), EZorvekMCPBridgeParameterForm::Text, true},
				{TEXT("Type"), TEXT("Optional asset type filter for name searches. Defaults to Any.")},
				{TEXT("PropertyLimit"), TEXT("Maximum inspectable properties to return. Defaults to 200. Use 0 for no explicit limit.")},
			},
			&ZorvekMCPBridgeAssetTools::HandleInspectAsset,
		},
	};
	return Table;
}
