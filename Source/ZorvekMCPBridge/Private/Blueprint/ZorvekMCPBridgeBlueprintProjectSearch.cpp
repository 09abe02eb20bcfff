#include "Blueprint/ZorvekMCPBridgeBlueprintProjectSearch.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeAssetRegistryPort.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

// The walk's helpers live in the search's namespace, so they need no using-directive (which would
// reach every file after this one in the editor's unity build).
namespace ZorvekMCPBridgeBlueprintProjectSearch
{
namespace
{
	const TCHAR* const ProjectSearchToolName = TEXT("blueprint_search_project");
	// Longer comment texts are cut in a hit's context (the whole text is its matched_text).
	constexpr int32 ProjectSearchContextTextLength = 120;
	// The hits kept between two prunings, as a multiple of the limit: pruning sorts, so doing it
	// rarely keeps a search that hits everything linear.
	constexpr int32 ProjectSearchPruneFactor = 4;

	// A Blueprint the registry listed under the package paths.
	struct FProjectSearchBlueprint
	{
		// The reader's form, /Game/A/BP_X.BP_X.
		FString AssetPath;
		FString AssetName;
		// The graph a Blueprint-level hit suggests reading, once the Blueprint was opened.
		FString DefaultReadGraph;
	};

	struct FProjectSearchHit
	{
		EMatchQuality Quality = EMatchQuality::None;
		// Discovery order: registry hits first, then each opened Blueprint's content in registry order.
		int64 Sequence = 0;
		ESearchType Type = ESearchType::Blueprint;
		const TCHAR* MatchKind = TEXT("");
		FString MatchedText;
		int32 BlueprintIndex = INDEX_NONE;
		FString GraphName;
		FString NodeGuid;
		FString Context;
	};

	// One text of an object that a query may match, and what a match there is.
	struct FProjectSearchField
	{
		ESearchType Type;
		const TCHAR* MatchKind;
		FString Text;
	};

	const TCHAR* GetProjectSearchGraphKindWord(EZorvekMCPBridgeGraphKind Kind)
	{
		switch (Kind)
		{
		case EZorvekMCPBridgeGraphKind::Function:
			return TEXT("function");
		case EZorvekMCPBridgeGraphKind::Ubergraph:
			return TEXT("event");
		case EZorvekMCPBridgeGraphKind::Macro:
			return TEXT("macro");
		case EZorvekMCPBridgeGraphKind::InterfaceImplementation:
			return TEXT("interface function");
		default:
			return TEXT("other");
		}
	}

	FString ShortenProjectSearchText(const FString& Text)
	{
		FString Line = Text.Replace(TEXT("\r"), TEXT("")).Replace(TEXT("\n"), TEXT(" "));
		if (Line.Len() > ProjectSearchContextTextLength)
		{
			Line = Line.Left(ProjectSearchContextTextLength - 3) + TEXT("...");
		}
		return Line;
	}

	FString GetProjectSearchTitleLine(const FString& Title)
	{
		int32 LineEnd = INDEX_NONE;
		return Title.FindChar(TEXT('\n'), LineEnd) ? Title.Left(LineEnd) : Title;
	}

	FString FindProjectSearchTag(const FZorvekMCPBridgeAssetData& Asset, const TCHAR* TagName)
	{
		for (const FZorvekMCPBridgeAssetTag& Tag : Asset.Tags)
		{
			if (Tag.Name.Equals(TagName, ESearchCase::IgnoreCase))
			{
				return Tag.Value;
			}
		}
		return FString();
	}

	// The class a class tag names; empty for a missing tag or a Blueprint without parent ("None").
	FString ReadProjectSearchClassTag(const FZorvekMCPBridgeAssetData& Asset, const TCHAR* TagName)
	{
		const FString ClassPath = ParseClassTag(FindProjectSearchTag(Asset, TagName));
		return ClassPath.Equals(TEXT("None"), ESearchCase::IgnoreCase) ? FString() : ClassPath;
	}

	// The interface an event node implements: its event's owner when that is one of the
	// Blueprint's interfaces.
	const FZorvekMCPBridgeImplementedInterfaceSnapshot* FindProjectSearchEventInterface(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		if (Node.Kind != EZorvekMCPBridgeNodeKind::Event || Node.Data.EventOwnerClassPath.IsEmpty())
		{
			return nullptr;
		}
		return ZorvekMCPBridgeSpawnerIds::FindImplementedInterface(Blueprint, Node.Data.EventOwnerClassPath);
	}

	TSharedPtr<FJsonValue> MakeProjectSearchNextTool(const TCHAR* ToolName, const TSharedPtr<FJsonObject>& Arguments)
	{
		TSharedPtr<FJsonObject> Next = MakeShared<FJsonObject>();
		Next->SetStringField(TEXT("tool"), ToolName);
		Next->SetObjectField(TEXT("arguments"), Arguments);
		return MakeShared<FJsonValueObject>(Next);
	}

	TSharedPtr<FJsonValue> MakeProjectSearchReadGraph(const FString& AssetPath, const FString& GraphName)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("BlueprintNameOrPath"), AssetPath);
		Arguments->SetStringField(TEXT("GraphName"), GraphName);
		return MakeProjectSearchNextTool(TEXT("blueprint_read_graph"), Arguments);
	}

	TSharedPtr<FJsonValue> MakeProjectSearchInspect(const FString& AssetPath)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("AssetNameOrPath"), AssetPath);
		return MakeProjectSearchNextTool(TEXT("unreal_inspect_asset"), Arguments);
	}

	TArray<TSharedPtr<FJsonValue>> MakeProjectSearchStrings(const TArray<FString>& Values)
	{
		TArray<TSharedPtr<FJsonValue>> Array;
		for (const FString& Value : Values)
		{
			Array.Add(MakeShared<FJsonValueString>(Value));
		}
		return Array;
	}

	class FProjectSearch
	{
	public:
		FProjectSearch(IZorvekMCPBridgeEditorPort& InPort, const FSearchParams& InParams)
			: Port(InPort)
			, Params(InParams)
			, Matcher(InParams.ParsedQuery)
		{
		}

		TSharedPtr<FJsonObject> Run()
		{
			ScanRegistry();
			if (Params.WantsContent())
			{
				const int32 ContentCount = FMath::Min(Blueprints.Num(), Params.MaxBlueprints);
				for (int32 Index = 0; Index < ContentCount; ++Index)
				{
					SearchContent(Index);
				}
				bContentScanTruncated = ContentCount < Blueprints.Num();
				ContentSkippedCount = Blueprints.Num() - ContentCount;
			}
			PruneHits(Params.Limit);
			return MakeResultJson();
		}

	private:
		// Phase one: the registry's Blueprint assets under the paths, with their tags; nothing loads.
		void ScanRegistry()
		{
			FZorvekMCPBridgeAssetFilter Filter;
			Filter.PackagePaths = Params.PackagePaths;
			Filter.bRecursivePaths = true;
			// Widget, animation and editor utility Blueprints are Blueprints too.
			Filter.ClassPaths.Add(ZorvekMCPBridgeAssets::BlueprintClassPath);
			Filter.bRecursiveClasses = true;
			Filter.bIncludeTags = Params.WantsType(ESearchType::Blueprint);
			Port.GetAssetRegistry().EnumerateAssets(Filter, [this](const FZorvekMCPBridgeAssetData& Asset)
			{
				FProjectSearchBlueprint& Blueprint = Blueprints.Emplace_GetRef();
				Blueprint.AssetPath = Asset.ObjectPath.IsEmpty() ? ZorvekMCPBridgeAssets::MakeAssetObjectPath(Asset.PackageName) : Asset.ObjectPath;
				Blueprint.AssetName = Asset.AssetName;
				if (Params.WantsType(ESearchType::Blueprint))
				{
					SearchRegistryEntry(Blueprints.Num() - 1, Asset);
				}
				return true;
			});
		}

		void SearchRegistryEntry(int32 BlueprintIndex, const FZorvekMCPBridgeAssetData& Asset)
		{
			const FString ParentClassPath = ReadProjectSearchClassTag(Asset, TEXT("ParentClass"));
			const FString NativeParentClassPath = ReadProjectSearchClassTag(Asset, TEXT("NativeParentClass"));
			const FString ParentName = GetClassDisplayName(ParentClassPath);
			TArray<FProjectSearchField> Fields;
			Fields.Add({ESearchType::Blueprint, TEXT("blueprint_name"), Asset.AssetName});
			Fields.Add({ESearchType::Blueprint, TEXT("display_name"), FindProjectSearchTag(Asset, TEXT("BlueprintDisplayName"))});
			Fields.Add({ESearchType::Blueprint, TEXT("parent_class"), ParentName});
			if (!NativeParentClassPath.Equals(ParentClassPath, ESearchCase::IgnoreCase))
			{
				Fields.Add({ESearchType::Blueprint, TEXT("native_parent_class"), GetClassDisplayName(NativeParentClassPath)});
			}
			Fields.Add({ESearchType::Blueprint, TEXT("package_path"), Asset.PackageName});
			Fields.Add({ESearchType::Blueprint, TEXT("description"), FindProjectSearchTag(Asset, TEXT("BlueprintDescription"))});

			FProjectSearchHit Hit;
			if (!MatchFields(Fields, BlueprintIndex, Hit))
			{
				return;
			}
			Hit.Context = FString::Printf(TEXT("Blueprint %s, parent %s, in %s"), *Asset.AssetName,
				ParentName.IsEmpty() ? TEXT("None") : *ParentName, *Asset.PackagePath);
			AddHit(MoveTemp(Hit));
		}

		// Phase two for one Blueprint: open it, read its snapshot once, match its content.
		void SearchContent(int32 BlueprintIndex)
		{
			FProjectSearchBlueprint& Entry = Blueprints[BlueprintIndex];
			const FZorvekMCPBridgeObjectHandle Object = Port.GetObjects().LoadObject(Entry.AssetPath);
			if (!Object.IsValid())
			{
				AddPartialFailure(Entry.AssetPath, FString::Printf(TEXT("Could not load Blueprint: %s"), *Entry.AssetPath));
				return;
			}
			FZorvekMCPBridgeBlueprintSnapshot Blueprint;
			if (!Port.GetBlueprints().ReadBlueprint(Object, Blueprint))
			{
				AddPartialFailure(Entry.AssetPath, FString::Printf(TEXT("Could not read the Blueprint's graphs: %s"), *Entry.AssetPath));
				return;
			}
			++LoadedCount;
			Entry.DefaultReadGraph = GetDefaultReadGraph(Blueprint);

			SearchMembers(BlueprintIndex, Blueprint);
			const bool bWantsNodes = Params.WantsType(ESearchType::Node) || Params.WantsType(ESearchType::Comment) || Params.WantsType(ESearchType::CustomEvent)
				|| Params.WantsType(ESearchType::Interface);
			for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
			{
				SearchGraph(BlueprintIndex, Graph);
				if (bWantsNodes)
				{
					for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
					{
						SearchNode(BlueprintIndex, Blueprint, Graph, Node);
					}
				}
			}
		}

		// What blueprint_read_graph defaults to when the Blueprint has it, else its first event
		// graph, else its first graph.
		static FString GetDefaultReadGraph(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint)
		{
			if (const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Blueprint, ZorvekMCPBridgeBlueprintLoading::DefaultGraphName))
			{
				return Graph->Name;
			}
			const TArray<FString> Ubergraphs = ZorvekMCPBridgeBlueprintLoading::GetUbergraphNames(Blueprint);
			if (!Ubergraphs.IsEmpty())
			{
				return Ubergraphs[0];
			}
			return Blueprint.Graphs.IsEmpty() ? FString() : Blueprint.Graphs[0].Name;
		}

		// Variables, components and implemented interfaces: hits of the Blueprint, outside graphs.
		void SearchMembers(int32 BlueprintIndex, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint)
		{
			if (Params.WantsType(ESearchType::Variable))
			{
				for (const FZorvekMCPBridgeVariableSnapshot& Variable : Blueprint.Variables)
				{
					FProjectSearchHit Hit;
					if (MatchFields({{ESearchType::Variable, TEXT("variable"), Variable.VarName.ToString()}}, BlueprintIndex, Hit))
					{
						Hit.Context = FString::Printf(TEXT("variable %s: %s, category %s"), *Variable.VarName.ToString(),
							*ZorvekMCPBridgePinTypes::DescribePinType(Variable.VarType), Variable.Category.IsEmpty() ? TEXT("Default") : *Variable.Category);
						AddHit(MoveTemp(Hit));
					}
				}
			}
			if (Params.WantsType(ESearchType::Component))
			{
				for (const FZorvekMCPBridgeComponentSnapshot& Component : Blueprint.Components)
				{
					FProjectSearchHit Hit;
					if (MatchFields({{ESearchType::Component, TEXT("component"), Component.Name}, {ESearchType::Component, TEXT("component_class"), Component.ComponentClassName}},
						BlueprintIndex, Hit))
					{
						Hit.Context = Component.ParentComponentName.IsEmpty()
							? FString::Printf(TEXT("component %s (%s), a root"), *Component.Name, *Component.ComponentClassName)
							: FString::Printf(TEXT("component %s (%s) under %s"), *Component.Name, *Component.ComponentClassName, *Component.ParentComponentName);
						AddHit(MoveTemp(Hit));
					}
				}
			}
			if (Params.WantsType(ESearchType::Interface))
			{
				for (const FZorvekMCPBridgeImplementedInterfaceSnapshot& Interface : Blueprint.ImplementedInterfaces)
				{
					const FString InterfaceName = GetClassDisplayName(Interface.InterfaceClassPath);
					FProjectSearchHit Hit;
					if (MatchFields({{ESearchType::Interface, TEXT("interface"), InterfaceName}}, BlueprintIndex, Hit))
					{
						Hit.Context = FString::Printf(TEXT("implements %s (%s), %d graphs"), *InterfaceName, *Interface.InterfaceClassPath, Interface.GraphNames.Num());
						AddHit(MoveTemp(Hit));
					}
				}
			}
		}

		void SearchGraph(int32 BlueprintIndex, const FZorvekMCPBridgeGraphSnapshot& Graph)
		{
			ESearchType Type = ESearchType::Graph;
			const TCHAR* MatchKind = TEXT("graph");
			if (Graph.Kind == EZorvekMCPBridgeGraphKind::Function)
			{
				Type = ESearchType::Function;
				MatchKind = TEXT("function");
			}
			else if (Graph.Kind == EZorvekMCPBridgeGraphKind::InterfaceImplementation)
			{
				Type = ESearchType::Interface;
				MatchKind = TEXT("interface_function");
			}
			if (!Params.WantsType(Type))
			{
				return;
			}
			FProjectSearchHit Hit;
			if (MatchFields({{Type, MatchKind, Graph.Name}}, BlueprintIndex, Hit))
			{
				Hit.GraphName = Graph.Name;
				Hit.Context = FString::Printf(TEXT("%s graph %s with %d nodes"), GetProjectSearchGraphKindWord(Graph.Kind), *Graph.Name, Graph.Nodes.Num());
				AddHit(MoveTemp(Hit));
			}
		}

		void SearchNode(int32 BlueprintIndex, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeGraphSnapshot& Graph, const FZorvekMCPBridgeNodeSnapshot& Node)
		{
			TArray<FProjectSearchField> Fields;
			if (Node.Kind == EZorvekMCPBridgeNodeKind::Comment)
			{
				Fields.Add({ESearchType::Comment, TEXT("comment"), Node.Title});
			}
			else
			{
				if (Node.Kind == EZorvekMCPBridgeNodeKind::CustomEvent)
				{
					Fields.Add({ESearchType::CustomEvent, TEXT("custom_event"), Node.Data.CustomFunctionName});
				}
				else if (FindProjectSearchEventInterface(Blueprint, Node))
				{
					Fields.Add({ESearchType::Interface, TEXT("interface_event"), Node.Data.EventName});
				}
				// The first line: further lines of a full title say what the node works on
				// ("Target is Character"), which is no name of the node.
				Fields.Add({ESearchType::Node, TEXT("node_title"), GetProjectSearchTitleLine(Node.Title)});
				if (Node.Kind == EZorvekMCPBridgeNodeKind::FunctionCall)
				{
					Fields.Add({ESearchType::Node, TEXT("called_function"), Node.Data.MemberName});
				}
				else if (Node.Kind == EZorvekMCPBridgeNodeKind::VariableGet || Node.Kind == EZorvekMCPBridgeNodeKind::VariableSet)
				{
					Fields.Add({ESearchType::Node, TEXT("variable_reference"), Node.Data.VariableName});
				}
				if (Params.WantsType(ESearchType::Node))
				{
					Fields.Add({ESearchType::Node, TEXT("spawner_id"), ZorvekMCPBridgeSpawnerIds::GetNodeSpawnerId(Blueprint, Graph, Node)});
				}
				// The bubble comment any node may carry.
				Fields.Add({ESearchType::Comment, TEXT("node_comment"), Node.Comment});
			}
			FProjectSearchHit Hit;
			if (!MatchFields(Fields, BlueprintIndex, Hit))
			{
				return;
			}
			Hit.GraphName = Graph.Name;
			Hit.NodeGuid = Node.NodeGuid;
			if (Node.Kind == EZorvekMCPBridgeNodeKind::Comment)
			{
				Hit.Context = FString::Printf(TEXT("comment box in graph %s: %s"), *Graph.Name, *ShortenProjectSearchText(Node.Title));
			}
			else if (Node.Kind == EZorvekMCPBridgeNodeKind::CustomEvent)
			{
				Hit.Context = FString::Printf(TEXT("custom event %s in graph %s with %d parameters"), *Node.Data.CustomFunctionName, *Graph.Name, Node.Data.UserPins.Num());
			}
			else
			{
				const FString SpawnerId = ZorvekMCPBridgeSpawnerIds::GetNodeSpawnerId(Blueprint, Graph, Node);
				Hit.Context = FString::Printf(TEXT("node '%s' in graph %s"), *ShortenProjectSearchText(Node.Title), *Graph.Name);
				if (!SpawnerId.IsEmpty())
				{
					Hit.Context += FString::Printf(TEXT(", spawner id %s"), *SpawnerId);
				}
			}
			AddHit(MoveTemp(Hit));
		}

		// The best-matching field the types allow (the earlier field on a tie) as a hit without
		// place and context; false when none matches.
		bool MatchFields(const TArray<FProjectSearchField>& Fields, int32 BlueprintIndex, FProjectSearchHit& OutHit)
		{
			const FProjectSearchField* Best = nullptr;
			EMatchQuality BestQuality = EMatchQuality::None;
			for (const FProjectSearchField& Field : Fields)
			{
				if (!Params.WantsType(Field.Type))
				{
					continue;
				}
				const EMatchQuality Quality = Matcher.Match(Field.Text);
				if (Quality > BestQuality)
				{
					Best = &Field;
					BestQuality = Quality;
				}
			}
			if (!Best)
			{
				return false;
			}
			OutHit.Quality = BestQuality;
			OutHit.Type = Best->Type;
			OutHit.MatchKind = Best->MatchKind;
			OutHit.MatchedText = Best->Text;
			OutHit.BlueprintIndex = BlueprintIndex;
			return true;
		}

		void AddHit(FProjectSearchHit&& Hit)
		{
			Hit.Sequence = ++HitCount;
			Hits.Add(MoveTemp(Hit));
			if (Hits.Num() >= Params.Limit * ProjectSearchPruneFactor)
			{
				PruneHits(Params.Limit);
			}
		}

		// Keeps the best hits: better matches first, then in discovery order.
		void PruneHits(int32 Keep)
		{
			Hits.Sort([](const FProjectSearchHit& A, const FProjectSearchHit& B)
			{
				return A.Quality != B.Quality ? A.Quality > B.Quality : A.Sequence < B.Sequence;
			});
			if (Hits.Num() > Keep)
			{
				Hits.SetNum(Keep);
			}
		}

		void AddPartialFailure(const FString& AssetPath, const FString& Error)
		{
			TSharedPtr<FJsonObject> Failure = MakeShared<FJsonObject>();
			Failure->SetStringField(TEXT("asset_path"), AssetPath);
			Failure->SetStringField(TEXT("reason"), TEXT("failed_to_load_blueprint_for_project_search"));
			Failure->SetStringField(TEXT("error"), Error);
			PartialFailures.Add(MakeShared<FJsonValueObject>(Failure));
		}

		TSharedPtr<FJsonObject> MakeHitJson(const FProjectSearchHit& Hit) const
		{
			const FProjectSearchBlueprint& Blueprint = Blueprints[Hit.BlueprintIndex];
			TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
			Json->SetStringField(TEXT("type"), GetSearchTypeWord(Hit.Type));
			Json->SetStringField(TEXT("match_kind"), Hit.MatchKind);
			Json->SetStringField(TEXT("match_quality"), GetMatchQualityWord(Hit.Quality));
			Json->SetStringField(TEXT("matched_text"), Hit.MatchedText);
			Json->SetStringField(TEXT("asset_path"), Blueprint.AssetPath);
			Json->SetStringField(TEXT("asset_name"), Blueprint.AssetName);
			if (!Hit.GraphName.IsEmpty())
			{
				Json->SetStringField(TEXT("graph_name"), Hit.GraphName);
			}
			if (!Hit.NodeGuid.IsEmpty())
			{
				Json->SetStringField(TEXT("node_guid"), Hit.NodeGuid);
			}
			Json->SetStringField(TEXT("context"), Hit.Context);

			TArray<TSharedPtr<FJsonValue>> NextTools;
			if (!Hit.GraphName.IsEmpty())
			{
				NextTools.Add(MakeProjectSearchReadGraph(Blueprint.AssetPath, Hit.GraphName));
			}
			else
			{
				// The reader lists variables, components and interfaces with any graph it reads.
				if (!Blueprint.DefaultReadGraph.IsEmpty())
				{
					NextTools.Add(MakeProjectSearchReadGraph(Blueprint.AssetPath, Blueprint.DefaultReadGraph));
				}
				NextTools.Add(MakeProjectSearchInspect(Blueprint.AssetPath));
			}
			Json->SetArrayField(TEXT("recommended_next_tools"), NextTools);
			return Json;
		}

		TSharedPtr<FJsonObject> MakeResultJson() const
		{
			TArray<FString> TypeWords;
			for (int32 Index = 0; Index < static_cast<int32>(ESearchType::Count); ++Index)
			{
				if (Params.WantsType(static_cast<ESearchType>(Index)))
				{
					TypeWords.Add(GetSearchTypeWord(static_cast<ESearchType>(Index)));
				}
			}
			TArray<TSharedPtr<FJsonValue>> Results;
			for (const FProjectSearchHit& Hit : Hits)
			{
				Results.Add(MakeShared<FJsonValueObject>(MakeHitJson(Hit)));
			}

			TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
			Result->SetStringField(TEXT("tool"), ProjectSearchToolName);
			Result->SetStringField(TEXT("query"), Params.Query);
			Result->SetArrayField(TEXT("package_paths"), MakeProjectSearchStrings(Params.PackagePaths));
			Result->SetArrayField(TEXT("types"), MakeProjectSearchStrings(TypeWords));
			Result->SetNumberField(TEXT("limit"), Params.Limit);
			Result->SetNumberField(TEXT("max_blueprints"), Params.MaxBlueprints);
			Result->SetNumberField(TEXT("result_count"), Results.Num());
			Result->SetNumberField(TEXT("total_match_count"), static_cast<double>(HitCount));
			Result->SetBoolField(TEXT("results_truncated"), HitCount > Results.Num());
			Result->SetArrayField(TEXT("results"), Results);
			Result->SetArrayField(TEXT("partial_failures"), PartialFailures);
			Result->SetNumberField(TEXT("scanned_blueprint_count"), Blueprints.Num());
			Result->SetBoolField(TEXT("content_searched"), Params.WantsContent());
			Result->SetNumberField(TEXT("loaded_blueprint_count"), LoadedCount);
			Result->SetBoolField(TEXT("content_scan_truncated"), bContentScanTruncated);
			Result->SetNumberField(TEXT("content_skipped_blueprint_count"), ContentSkippedCount);
			Result->SetStringField(TEXT("agent_guidance"),
				TEXT("Each result names where it is (asset_path, graph_name, node_guid); call its recommended_next_tools with the arguments given, for example blueprint_read_graph with asset_path and graph_name, before drawing conclusions. ")
				TEXT("Graph, node, variable, component, comment, custom event, interface and function results come only from the Blueprints this call opened: when content_scan_truncated is true, narrow PackagePaths or raise MaxBlueprints to search the rest."));
			TArray<TSharedPtr<FJsonValue>> NextTools;
			NextTools.Add(MakeShared<FJsonValueString>(TEXT("blueprint_read_graph")));
			NextTools.Add(MakeShared<FJsonValueString>(TEXT("unreal_inspect_asset")));
			Result->SetArrayField(TEXT("recommended_next_tools"), NextTools);
			return Result;
		}

		IZorvekMCPBridgeEditorPort& Port;
		const FSearchParams& Params;
		FSearchMatcher Matcher;
		TArray<FProjectSearchBlueprint> Blueprints;
		TArray<FProjectSearchHit> Hits;
		int64 HitCount = 0;
		int32 LoadedCount = 0;
		bool bContentScanTruncated = false;
		int32 ContentSkippedCount = 0;
		TArray<TSharedPtr<FJsonValue>> PartialFailures;
	};
}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintProjectSearch::SearchProject(IZorvekMCPBridgeEditorPort& Port, const FSearchParams& Params)
{
	FProjectSearch Search(Port, Params);
	return Search.Run();
}
