#include "Tools/ZorvekMCPBridgeBlueprintReadTools.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintGraphReader.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	// Joins the other ubergraphs' names in the defaulted-graph warning.
	const TCHAR* const ReadGraphUbergraphSeparator = TEXT(", ");

	struct FReadGraphParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
		bool bGraphNameDefaulted = false;

		// Limit is declared in the catalogue but not read: the whole graph is always returned.
		static FReadGraphParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FReadGraphParams Params;
			Params.BlueprintNameOrPath = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("BlueprintNameOrPath"), FString());
			Params.GraphName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("GraphName"), FString());
			if (Params.GraphName.IsEmpty())
			{
				Params.GraphName = ZorvekMCPBridgeBlueprintLoading::DefaultGraphName;
				Params.bGraphNameDefaulted = true;
			}
			return Params;
		}
	};

	// The warning for a defaulted graph name when the Blueprint has further event graphs; empty
	// when there is nothing to warn about.
	FString MakeDefaultedGraphWarning(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& GraphName)
	{
		const TArray<FString> Ubergraphs = ZorvekMCPBridgeBlueprintLoading::GetUbergraphNames(Blueprint);
		if (Ubergraphs.Num() <= 1)
		{
			return FString();
		}
		TArray<FString> Others;
		for (const FString& Name : Ubergraphs)
		{
			if (!Name.Equals(GraphName, ESearchCase::IgnoreCase))
			{
				Others.Add(Name);
			}
		}
		return FString::Printf(TEXT("blueprint_read_graph defaulted to '%s', but this Blueprint has %d Ubergraphs. Read additional graphs explicitly with GraphName. Other Ubergraphs: %s"),
			*GraphName, Ubergraphs.Num(), *FString::Join(Others, ReadGraphUbergraphSeparator));
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintReadTools::HandleReadGraph(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_read_graph"));
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	const FReadGraphParams Params = FReadGraphParams::Read(Arguments);

	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(Error, true);
	}
	const FZorvekMCPBridgeBlueprintSnapshot& Blueprint = Loaded.Snapshot;
	if (!Loaded.Blueprint.IsValid())
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(TEXT("Blueprint is null."), true);
	}
	const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Blueprint, Params.GraphName);
	if (!Graph)
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(Params.GraphName, Loaded.AssetPath), true);
	}

	const ZorvekMCPBridgeBlueprintGraphReader::FGraphReading Reading = ZorvekMCPBridgeBlueprintGraphReader::ReadGraph(Port, Blueprint, *Graph);
	const TArray<TSharedPtr<FJsonValue>> Summaries = ZorvekMCPBridgeBlueprintLoading::MakeGraphSummaries(Blueprint, Loaded.AssetPath);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("raw_result"), Reading.RawResult);
	Result->SetObjectField(TEXT("parsed_graph"), Reading.ParsedGraph);
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetArrayField(TEXT("available_graphs"), Summaries);
	Result->SetNumberField(TEXT("available_graph_count"), Summaries.Num());
	if (Params.bGraphNameDefaulted)
	{
		const FString Warning = MakeDefaultedGraphWarning(Blueprint, Params.GraphName);
		if (!Warning.IsEmpty())
		{
			TArray<TSharedPtr<FJsonValue>> Warnings;
			Warnings.Add(MakeShared<FJsonValueString>(Warning));
			Result->SetArrayField(TEXT("warnings"), Warnings);
		}
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}
