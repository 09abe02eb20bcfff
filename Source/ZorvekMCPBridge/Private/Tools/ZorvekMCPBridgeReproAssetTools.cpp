#include "Tools/ZorvekMCPBridgeReproAssetTools.h"

#include "Assets/ZorvekMCPBridgeReproAssets.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

TSharedPtr<FJsonObject> ZorvekMCPBridgeReproAssetTools::HandleCreateMossbankReproAssets(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("unreal_create_mossbank_repro_assets"));
	}
	ZorvekMCPBridgeReproAssets::FParams Params;
	Params.PackagePath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("PackagePath"), FString());
	Params.AssetPrefix = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("AssetPrefix"), TEXT("ZorvekHG"));
	Params.Now = FDateTime::Now();
	// Partial failures are reported in the result; the call fails only when no asset was made.
	const TSharedPtr<FJsonObject> Result = ZorvekMCPBridgeReproAssets::CreateMossbankReproAssets(*Context.EditorPort, Params);
	const bool bNothingMade = Result->GetStringField(TEXT("camera_asset_object_path")).IsEmpty()
		&& Result->GetStringField(TEXT("camera_rig_object_path")).IsEmpty()
		&& Result->GetStringField(TEXT("state_tree_object_path")).IsEmpty();
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, bNothingMade);
}
