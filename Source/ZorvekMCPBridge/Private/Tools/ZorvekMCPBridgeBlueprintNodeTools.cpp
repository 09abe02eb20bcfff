#include "Tools/ZorvekMCPBridgeBlueprintNodeTools.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintNodes.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	// The comment box a client gets when it gives no size.
	constexpr int32 NodeToolsDefaultCommentWidth = 400;
	constexpr int32 NodeToolsDefaultCommentHeight = 220;

	TSharedPtr<FJsonObject> FailNodeTool(const FString& Message)
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(Message, true);
	}

	FString ReadNodeToolString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
	{
		return ZorvekMCPBridgeToolArguments::ReadString(Arguments, Key, FString());
	}

	struct FNodeToolAddNodeParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
		FString SpawnerId;
		FString NodeName;
		int32 NodePosX = 0;
		int32 NodePosY = 0;
		TArray<FZorvekMCPBridgePinDefault> PinDefaults;
		// Why PinDefaults cannot be used; the call is refused with it before anything is made.
		FString PinDefaultsError;

		static FNodeToolAddNodeParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FNodeToolAddNodeParams Params;
			Params.BlueprintNameOrPath = ReadNodeToolString(Arguments, TEXT("BlueprintNameOrPath"));
			Params.GraphName = ReadNodeToolString(Arguments, TEXT("GraphName"));
			Params.SpawnerId = ReadNodeToolString(Arguments, TEXT("SpawnerId"));
			Params.NodeName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("NodeName"), ZorvekMCPBridgeBlueprintNodes::DefaultNodeName);
			if (Params.NodeName.IsEmpty())
			{
				Params.NodeName = ZorvekMCPBridgeBlueprintNodes::DefaultNodeName;
			}
			Params.NodePosX = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosX"), 0);
			Params.NodePosY = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosY"), 0);
			ZorvekMCPBridgeBlueprintNodeTools::ReadPinDefaults(Arguments, Params.PinDefaults, Params.PinDefaultsError);
			return Params;
		}
	};

	struct FNodeToolConnectParams
	{
		FString BlueprintNameOrPath;
		ZorvekMCPBridgeBlueprintNodes::FPinConnection Connection;

		static FNodeToolConnectParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FNodeToolConnectParams Params;
			Params.BlueprintNameOrPath = ReadNodeToolString(Arguments, TEXT("BlueprintNameOrPath"));
			Params.Connection.GraphName = ReadNodeToolString(Arguments, TEXT("GraphName"));
			Params.Connection.SourceNodeGuid = ReadNodeToolString(Arguments, TEXT("SourceNodeGuid"));
			Params.Connection.SourcePinName = ReadNodeToolString(Arguments, TEXT("SourcePinName"));
			Params.Connection.TargetNodeGuid = ReadNodeToolString(Arguments, TEXT("TargetNodeGuid"));
			Params.Connection.TargetPinName = ReadNodeToolString(Arguments, TEXT("TargetPinName"));
			return Params;
		}
	};

	struct FNodeToolSetPositionParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
		FString NodeGuid;
		// Each axis is optional: a missing one keeps the node's coordinate, so the axes are read
		// once the node is found.
		TSharedPtr<FJsonObject> Arguments;

		static FNodeToolSetPositionParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FNodeToolSetPositionParams Params;
			Params.BlueprintNameOrPath = ReadNodeToolString(Arguments, TEXT("BlueprintNameOrPath"));
			Params.GraphName = ReadNodeToolString(Arguments, TEXT("GraphName"));
			Params.NodeGuid = ReadNodeToolString(Arguments, TEXT("NodeGuid"));
			Params.Arguments = Arguments;
			return Params;
		}

		// The coordinate as sent, or Current when the key is absent or not a number.
		int32 ReadAxis(const TCHAR* Key, int32 Current) const
		{
			return ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, Key, Current);
		}
	};

	struct FNodeToolAddCommentParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
		FString CommentText;
		int32 NodePosX = 0;
		int32 NodePosY = 0;
		int32 Width = NodeToolsDefaultCommentWidth;
		int32 Height = NodeToolsDefaultCommentHeight;
		// 0 keeps the engine's comment default.
		int32 FontSize = 0;

		static FNodeToolAddCommentParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FNodeToolAddCommentParams Params;
			Params.BlueprintNameOrPath = ReadNodeToolString(Arguments, TEXT("BlueprintNameOrPath"));
			Params.GraphName = ReadNodeToolString(Arguments, TEXT("GraphName"));
			Params.CommentText = ReadNodeToolString(Arguments, TEXT("CommentText"));
			Params.NodePosX = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosX"), 0);
			Params.NodePosY = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("NodePosY"), 0);
			Params.Width = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("Width"), NodeToolsDefaultCommentWidth);
			Params.Height = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("Height"), NodeToolsDefaultCommentHeight);
			Params.FontSize = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("FontSize"), 0);
			return Params;
		}
	};

	struct FNodeToolCompileParams
	{
		FString BlueprintNameOrPath;

		static FNodeToolCompileParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FNodeToolCompileParams Params;
			Params.BlueprintNameOrPath = ReadNodeToolString(Arguments, TEXT("BlueprintNameOrPath"));
			return Params;
		}
	};

	// Runs the operation on the context's editor, or answers that there is none.
	template <typename TParams>
	TSharedPtr<FJsonObject> RunNodeTool(FZorvekMCPBridgeToolContext& Context, const TCHAR* ToolName, const TParams& Params,
		TSharedPtr<FJsonObject> (*Operation)(IZorvekMCPBridgeEditorPort&, const TParams&))
	{
		if (!Context.EditorPort)
		{
			return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
		}
		return Operation(*Context.EditorPort, Params);
	}

	TSharedPtr<FJsonObject> NodeToolAddNode(IZorvekMCPBridgeEditorPort& Port, const FNodeToolAddNodeParams& Params)
	{
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
		FString Error;
		if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
		{
			return FailNodeTool(Error);
		}
		if (Params.SpawnerId.IsEmpty())
		{
			return FailNodeTool(TEXT("SpawnerId is required."));
		}
		if (!Params.PinDefaultsError.IsEmpty())
		{
			return FailNodeTool(Params.PinDefaultsError);
		}
		ZorvekMCPBridgeBlueprintNodes::FNodePlacement Placement;
		Placement.GraphName = Params.GraphName;
		Placement.SpawnerId = Params.SpawnerId;
		Placement.PosX = Params.NodePosX;
		Placement.PosY = Params.NodePosY;
		Placement.PinDefaults = Params.PinDefaults;
		ZorvekMCPBridgeBlueprintNodes::FPlacedNode Placed;
		if (!ZorvekMCPBridgeBlueprintNodes::PlaceNode(Port, Loaded, Placement, Placed, Error))
		{
			return FailNodeTool(Error);
		}
		Port.GetBlueprints().MarkModified(Loaded.Blueprint);

		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
		Result->SetStringField(TEXT("node_guid"), Placed.Node.NodeGuid);
		Result->SetNumberField(TEXT("node_pos_x"), Placed.Node.PosX);
		Result->SetNumberField(TEXT("node_pos_y"), Placed.Node.PosY);
		Result->SetObjectField(TEXT("add_result"), Placed.AddResult);
		Result->SetStringField(TEXT("node_name"), Params.NodeName);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
	}

	TSharedPtr<FJsonObject> NodeToolConnectNodes(IZorvekMCPBridgeEditorPort& Port, const FNodeToolConnectParams& Params)
	{
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
		FString Error;
		if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
		{
			return FailNodeTool(Error);
		}
		ZorvekMCPBridgeBlueprintNodes::FConnectedPins Connected;
		if (!ZorvekMCPBridgeBlueprintNodes::ConnectPins(Port, Loaded, Params.Connection, Connected, Error))
		{
			return FailNodeTool(Error);
		}
		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
		Result->SetStringField(TEXT("result"), Connected.ResultText);
		Result->SetBoolField(TEXT("connected"), true);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
	}

	TSharedPtr<FJsonObject> NodeToolSetNodePosition(IZorvekMCPBridgeEditorPort& Port, const FNodeToolSetPositionParams& Params)
	{
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
		FString Error;
		if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
		{
			return FailNodeTool(Error);
		}
		const FString GraphName = Params.GraphName.IsEmpty() ? FString(ZorvekMCPBridgeBlueprintLoading::DefaultGraphName) : Params.GraphName;
		if (Params.NodeGuid.IsEmpty())
		{
			return FailNodeTool(TEXT("blueprint_set_node_position requires NodeGuid."));
		}
		const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, GraphName);
		if (!Graph)
		{
			return FailNodeTool(ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(GraphName, Loaded.AssetPath));
		}
		const FZorvekMCPBridgeNodeSnapshot* Node = ZorvekMCPBridgeBlueprintNodes::FindNodeByGuid(*Graph, Params.NodeGuid);
		if (!Node)
		{
			return FailNodeTool(FString::Printf(TEXT("Could not resolve node GUID for positioning: %s"), *Params.NodeGuid));
		}
		const int32 PosX = Params.ReadAxis(TEXT("NodePosX"), Node->PosX);
		const int32 PosY = Params.ReadAxis(TEXT("NodePosY"), Node->PosY);
		IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
		const FString NodeGuid = Node->NodeGuid;
		const FString Title = Node->Title;
		const FString FoundGraphName = Graph->Name;
		if (!Blueprints.SetNodePosition(Loaded.Blueprint, FoundGraphName, NodeGuid, PosX, PosY))
		{
			return FailNodeTool(FString::Printf(TEXT("Could not resolve node GUID for positioning: %s"), *Params.NodeGuid));
		}
		// A move is not a structural change.
		Blueprints.MarkModified(Loaded.Blueprint);

		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
		Result->SetStringField(TEXT("graph_name"), FoundGraphName);
		Result->SetStringField(TEXT("node_guid"), NodeGuid);
		Result->SetStringField(TEXT("title"), Title);
		Result->SetNumberField(TEXT("node_pos_x"), PosX);
		Result->SetNumberField(TEXT("node_pos_y"), PosY);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
	}

	TSharedPtr<FJsonObject> NodeToolAddComment(IZorvekMCPBridgeEditorPort& Port, const FNodeToolAddCommentParams& Params)
	{
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
		FString Error;
		if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
		{
			return FailNodeTool(Error);
		}
		const FString GraphName = Params.GraphName.IsEmpty() ? FString(ZorvekMCPBridgeBlueprintLoading::DefaultGraphName) : Params.GraphName;
		if (Params.CommentText.IsEmpty())
		{
			return FailNodeTool(TEXT("blueprint_add_comment requires CommentText."));
		}
		const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, GraphName);
		if (!Graph)
		{
			return FailNodeTool(ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(GraphName, Loaded.AssetPath));
		}
		// A box of no or negative size would vanish in the graph panel.
		const int32 Width = FMath::Max(Params.Width, 1);
		const int32 Height = FMath::Max(Params.Height, 1);
		IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
		const FString FoundGraphName = Graph->Name;
		const FZorvekMCPBridgeNodeSnapshot Comment = Blueprints.AddComment(Loaded.Blueprint, FoundGraphName, Params.CommentText, Params.NodePosX, Params.NodePosY, Width, Height, Params.FontSize);
		if (Comment.NodeGuid.IsEmpty())
		{
			return FailNodeTool(FString::Printf(TEXT("Could not add a comment to graph '%s' in %s."), *FoundGraphName, *Loaded.AssetPath));
		}
		Blueprints.MarkStructurallyModified(Loaded.Blueprint);

		TSharedPtr<FJsonObject> Bounds = MakeShared<FJsonObject>();
		Bounds->SetNumberField(TEXT("x"), Params.NodePosX);
		Bounds->SetNumberField(TEXT("y"), Params.NodePosY);
		Bounds->SetNumberField(TEXT("width"), Width);
		Bounds->SetNumberField(TEXT("height"), Height);
		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
		Result->SetStringField(TEXT("graph_name"), FoundGraphName);
		Result->SetStringField(TEXT("node_guid"), Comment.NodeGuid);
		Result->SetStringField(TEXT("comment_text"), Params.CommentText);
		Result->SetObjectField(TEXT("bounds"), Bounds);
		Result->SetNumberField(TEXT("font_size"), Params.FontSize);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
	}

	TSharedPtr<FJsonObject> NodeToolCompile(IZorvekMCPBridgeEditorPort& Port, const FNodeToolCompileParams& Params)
	{
		FString PackagePath;
		FString ResolveError;
		const TSharedPtr<FJsonObject> Resolution = ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), Params.BlueprintNameOrPath, TEXT("Blueprint"),
			ZorvekMCPBridgeAssets::DefaultResolveLimit, PackagePath, ResolveError);
		if (PackagePath.IsEmpty())
		{
			// The resolver's own answer, so the client sees the candidates it had.
			return ZorvekMCPBridgeTools::MakeStructuredToolResult(Resolution, true);
		}
		const FString ObjectPath = ZorvekMCPBridgeAssets::MakeAssetObjectPath(PackagePath);
		IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
		const FZorvekMCPBridgeObjectHandle Blueprint = Port.GetObjects().LoadObject(ObjectPath);
		FZorvekMCPBridgeBlueprintSnapshot Before;
		if (!Blueprint.IsValid() || !Blueprints.ReadBlueprint(Blueprint, Before))
		{
			return FailNodeTool(FString::Printf(TEXT("Could not load Blueprint: %s"), *ObjectPath));
		}
		const FZorvekMCPBridgeCompileResult Compiled = Blueprints.Compile(Blueprint, ZorvekMCPBridgeBlueprintNodeTools::CompileFlags);
		FZorvekMCPBridgeBlueprintSnapshot After;
		if (!Blueprints.ReadBlueprint(Blueprint, After))
		{
			return FailNodeTool(FString::Printf(TEXT("Could not load Blueprint: %s"), *ObjectPath));
		}

		TArray<TSharedPtr<FJsonValue>> Messages;
		for (const FZorvekMCPBridgeCompileMessage& Message : Compiled.Messages)
		{
			TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
			Entry->SetStringField(TEXT("severity"), Message.SeverityText.ToLower());
			Entry->SetStringField(TEXT("text"), Message.Text);
			Messages.Add(MakeShared<FJsonValueObject>(Entry));
		}
		const bool bHasGeneratedClass = !After.GeneratedClassPath.IsEmpty();
		const bool bSuccess = Compiled.NumErrors == 0 && After.Status != EZorvekMCPBridgeBlueprintStatus::Error && bHasGeneratedClass;

		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		Result->SetStringField(TEXT("asset_path"), PackagePath);
		Result->SetStringField(TEXT("object_path"), After.Path.IsEmpty() ? ObjectPath : After.Path);
		Result->SetBoolField(TEXT("success"), bSuccess);
		Result->SetStringField(TEXT("status"), ZorvekMCPBridgeBlueprintNodeTools::GetStatusWord(After.Status));
		Result->SetNumberField(TEXT("error_count"), Compiled.NumErrors);
		Result->SetNumberField(TEXT("warning_count"), Compiled.NumWarnings);
		Result->SetNumberField(TEXT("message_count"), Messages.Num());
		Result->SetNumberField(TEXT("duration_seconds"), Compiled.DurationSeconds);
		Result->SetBoolField(TEXT("has_generated_class"), bHasGeneratedClass);
		Result->SetBoolField(TEXT("has_skeleton_generated_class"), !After.SkeletonClassPath.IsEmpty());
		Result->SetStringField(TEXT("generated_class_path"), After.GeneratedClassPath);
		Result->SetStringField(TEXT("skeleton_generated_class_path"), After.SkeletonClassPath);
		Result->SetArrayField(TEXT("messages"), Messages);
		// A compile with errors is an answer, not a tool failure: the client reads the messages.
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
	}
}

const TCHAR* ZorvekMCPBridgeBlueprintNodeTools::GetStatusWord(EZorvekMCPBridgeBlueprintStatus Status)
{
	switch (Status)
	{
	case EZorvekMCPBridgeBlueprintStatus::Dirty:
		return TEXT("dirty");
	case EZorvekMCPBridgeBlueprintStatus::Error:
		return TEXT("error");
	case EZorvekMCPBridgeBlueprintStatus::UpToDate:
		return TEXT("up_to_date");
	case EZorvekMCPBridgeBlueprintStatus::BeingCreated:
		return TEXT("being_created");
	case EZorvekMCPBridgeBlueprintStatus::UpToDateWithWarnings:
		return TEXT("up_to_date_with_warnings");
	default:
		return TEXT("unknown");
	}
}

bool ZorvekMCPBridgeBlueprintNodeTools::ReadPinDefaults(const TSharedPtr<FJsonObject>& Arguments, TArray<FZorvekMCPBridgePinDefault>& OutPinDefaults, FString& OutError)
{
	OutPinDefaults.Reset();
	const TSharedPtr<FJsonValue> Field = Arguments.IsValid() ? Arguments->TryGetField(TEXT("PinDefaults")) : nullptr;
	if (!Field.IsValid() || Field->Type == EJson::Null)
	{
		return true;
	}
	if (Field->Type != EJson::Object)
	{
		OutError = TEXT("PinDefaults must be an object of pin default values keyed by pin name.");
		return false;
	}
	const TSharedPtr<FJsonObject> Defaults = Field->AsObject();
	for (const TPair<FString, TSharedPtr<FJsonValue>>& Entry : Defaults->Values)
	{
		const TSharedPtr<FJsonValue>& Value = Entry.Value;
		FZorvekMCPBridgePinDefault PinDefault;
		PinDefault.PinName = Entry.Key;
		if (!Value.IsValid() || (Value->Type != EJson::String && Value->Type != EJson::Number && Value->Type != EJson::Boolean))
		{
			OutError = FString::Printf(TEXT("PinDefaults value for '%s' must be a string, number or boolean."), *Entry.Key);
			OutPinDefaults.Reset();
			return false;
		}
		if (Value->Type == EJson::Boolean)
		{
			PinDefault.Value = Value->AsBool() ? TEXT("true") : TEXT("false");
		}
		else
		{
			Value->TryGetString(PinDefault.Value);
		}
		OutPinDefaults.Add(MoveTemp(PinDefault));
	}
	return true;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintNodeTools::HandleAddNode(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	return RunNodeTool(Context, TEXT("blueprint_add_node"), FNodeToolAddNodeParams::Read(Arguments), &NodeToolAddNode);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintNodeTools::HandleConnectNodes(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	return RunNodeTool(Context, TEXT("blueprint_connect_nodes"), FNodeToolConnectParams::Read(Arguments), &NodeToolConnectNodes);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintNodeTools::HandleSetNodePosition(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	return RunNodeTool(Context, TEXT("blueprint_set_node_position"), FNodeToolSetPositionParams::Read(Arguments), &NodeToolSetNodePosition);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintNodeTools::HandleAddComment(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	return RunNodeTool(Context, TEXT("blueprint_add_comment"), FNodeToolAddCommentParams::Read(Arguments), &NodeToolAddComment);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintNodeTools::HandleCompile(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	return RunNodeTool(Context, TEXT("blueprint_compile"), FNodeToolCompileParams::Read(Arguments), &NodeToolCompile);
}
