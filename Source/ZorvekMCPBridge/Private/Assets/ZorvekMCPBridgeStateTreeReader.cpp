#include "Assets/ZorvekMCPBridgeAssetReaders.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	const TCHAR* const StateTreeRuntimePrefix = TEXT("/Script/StateTreeModule.");
	const TCHAR* const StateTreeEditorPrefix = TEXT("/Script/StateTreeEditorModule.");

	FString GetStateTreeKind(const FString& ClassName)
	{
		if (ClassName.Equals(TEXT("StateTree"), ESearchCase::IgnoreCase))
		{
			return TEXT("state_tree");
		}
		if (ClassName.Equals(TEXT("StateTreeEditorData"), ESearchCase::IgnoreCase))
		{
			return TEXT("state_tree_editor_data");
		}
		if (ClassName.Equals(TEXT("StateTreeState"), ESearchCase::IgnoreCase))
		{
			return TEXT("state_tree_state");
		}
		return TEXT("state_tree_object");
	}

	class FStateTreeReader
	{
	public:
		explicit FStateTreeReader(IZorvekMCPBridgeEditorPort& InPort)
			: Port(InPort)
			, Reflection(InPort.GetReflection())
		{
		}

		// Recursive with one visited set for the whole tree; only a revisit stops the walk.
		TSharedPtr<FJsonObject> BuildStateNode(FZorvekMCPBridgeObjectHandle State, int32 Depth, int32 Index)
		{
			TSharedPtr<FJsonObject> Node = MakeShared<FJsonObject>();
			if (Visited.Contains(State))
			{
				Node->SetBoolField(TEXT("cycle"), true);
				Node->SetNumberField(TEXT("depth"), Depth);
				Node->SetNumberField(TEXT("index"), Index);
				return Node;
			}
			Visited.Add(State);

			Node->SetNumberField(TEXT("depth"), Depth);
			Node->SetNumberField(TEXT("index"), Index);
			SetExportTextField(Node, State, TEXT("Name"), TEXT("state_name"));
			SetExportTextField(Node, State, TEXT("Type"), TEXT("state_type"));
			SetExportTextField(Node, State, TEXT("bEnabled"), TEXT("enabled"));

			ZorvekMCPBridgeAssets::SetStructElementArray(Port, Node, TEXT("enter_conditions"), Reflection.FindProperty(State, TEXT("EnterConditions")));
			ZorvekMCPBridgeAssets::SetStructElementArray(Port, Node, TEXT("tasks"), Reflection.FindProperty(State, TEXT("Tasks")));
			ZorvekMCPBridgeAssets::SetStructElementArray(Port, Node, TEXT("considerations"), Reflection.FindProperty(State, TEXT("Considerations")));

			TArray<TSharedPtr<FJsonValue>> Transitions;
			const FZorvekMCPBridgePropertyCursor TransitionArray = Reflection.FindProperty(State, TEXT("Transitions"));
			const int32 TransitionCount = TransitionArray.GetArrayNum();
			for (int32 TransitionIndex = 0; TransitionIndex < TransitionCount; ++TransitionIndex)
			{
				const FZorvekMCPBridgePropertyCursor Transition = TransitionArray.GetArrayElement(TransitionIndex);
				TSharedPtr<FJsonObject> TransitionJson = MakeShared<FJsonObject>();
				TransitionJson->SetStringField(TEXT("trigger"), ZorvekMCPBridgeAssets::GetExportText(Transition.FindStructField(TEXT("Trigger"))));
				TransitionJson->SetStringField(TEXT("target"), ZorvekMCPBridgeAssets::GetExportText(Transition.FindStructField(TEXT("State"))));
				TransitionJson->SetNumberField(TEXT("condition_count"), Transition.FindStructField(TEXT("Conditions")).GetArrayNum());
				Transitions.Add(MakeShared<FJsonValueObject>(TransitionJson));
			}
			Node->SetArrayField(TEXT("transitions"), Transitions);
			Node->SetNumberField(TEXT("transition_count"), Transitions.Num());

			const TArray<TSharedPtr<FJsonValue>> Children = BuildStateNodes(Reflection.FindProperty(State, TEXT("Children")), Depth + 1);
			Node->SetArrayField(TEXT("children"), Children);
			Node->SetNumberField(TEXT("child_count"), Children.Num());
			return Node;
		}

		void AddEditorData(const TSharedPtr<FJsonObject>& Result, FZorvekMCPBridgeObjectHandle EditorData)
		{
			Result->SetStringField(TEXT("editor_data_status"), TEXT("available"));
			Result->SetObjectField(TEXT("editor_data"), ZorvekMCPBridgeAssets::MakeObjectIdentityJson(Port.GetObjects(), EditorData));
			ZorvekMCPBridgeAssets::SetStructElementArray(Port, Result, TEXT("evaluators"), Reflection.FindProperty(EditorData, TEXT("Evaluators")));
			ZorvekMCPBridgeAssets::SetStructElementArray(Port, Result, TEXT("global_tasks"), Reflection.FindProperty(EditorData, TEXT("GlobalTasks")));

			ZorvekMCPBridgeAssets::SetNamedArray(Result, TEXT("states"), BuildStateNodes(Reflection.FindProperty(EditorData, TEXT("SubTrees")), 0));
		}

		// The state nodes of an array of state references, skipping empty entries.
		TArray<TSharedPtr<FJsonValue>> BuildStateNodes(const FZorvekMCPBridgePropertyCursor& StateArray, int32 Depth)
		{
			TArray<TSharedPtr<FJsonValue>> Nodes;
			const int32 Count = StateArray.GetArrayNum();
			for (int32 Index = 0; Index < Count; ++Index)
			{
				const FZorvekMCPBridgeObjectHandle State = StateArray.GetArrayElement(Index).GetReferencedObject();
				if (State.IsValid())
				{
					Nodes.Add(MakeShared<FJsonValueObject>(BuildStateNode(State, Depth, Index)));
				}
			}
			return Nodes;
		}

		// Counts of the compiled runtime data; a property the asset does not have is left out.
		TSharedPtr<FJsonObject> MakeRuntimeCounts(FZorvekMCPBridgeObjectHandle Asset) const
		{
			TSharedPtr<FJsonObject> Runtime = MakeShared<FJsonObject>();
			SetArrayCountField(Runtime, Asset, TEXT("States"), TEXT("compiled_state_count"));
			SetArrayCountField(Runtime, Asset, TEXT("Transitions"), TEXT("compiled_transition_count"));
			SetNumberValueField(Runtime, Asset, TEXT("EvaluatorsNum"), TEXT("compiled_evaluator_count"));
			SetNumberValueField(Runtime, Asset, TEXT("GlobalTasksNum"), TEXT("compiled_global_task_count"));
			return Runtime;
		}

	private:
		void SetExportTextField(const TSharedPtr<FJsonObject>& Target, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName, const TCHAR* Key) const
		{
			const FZorvekMCPBridgePropertyCursor Property = Reflection.FindProperty(Object, PropertyName);
			if (Property.IsValid())
			{
				Target->SetStringField(Key, ZorvekMCPBridgeAssets::GetExportText(Property));
			}
		}

		void SetArrayCountField(const TSharedPtr<FJsonObject>& Target, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName, const TCHAR* Key) const
		{
			const FZorvekMCPBridgePropertyCursor Property = Reflection.FindProperty(Object, PropertyName);
			if (Property.IsValid())
			{
				Target->SetNumberField(Key, Property.GetArrayNum());
			}
		}

		// The counts are uint16 properties; their export text is the number.
		void SetNumberValueField(const TSharedPtr<FJsonObject>& Target, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName, const TCHAR* Key) const
		{
			const FZorvekMCPBridgePropertyCursor Property = Reflection.FindProperty(Object, PropertyName);
			if (Property.IsValid())
			{
				Target->SetNumberField(Key, FCString::Atoi(*ZorvekMCPBridgeAssets::GetExportText(Property)));
			}
		}

		IZorvekMCPBridgeEditorPort& Port;
		IZorvekMCPBridgeReflection& Reflection;
		TSet<FZorvekMCPBridgeObjectHandle> Visited;
	};
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::ReadStateTreeAsset(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	const FZorvekMCPBridgeTypeInfo Class = Asset.IsValid() ? Port.GetObjects().GetClassInfo(Asset) : FZorvekMCPBridgeTypeInfo();
	const bool bRecognized = Class.Path.Contains(StateTreeRuntimePrefix) || Class.Path.Contains(StateTreeEditorPrefix);
	Result->SetBoolField(TEXT("recognized"), bRecognized);
	Result->SetStringField(TEXT("asset_kind"), bRecognized ? GetStateTreeKind(Class.Name) : FString(TEXT("unknown")));
	Result->SetBoolField(TEXT("is_state_tree_asset"), bRecognized && Class.Name.Equals(TEXT("StateTree"), ESearchCase::IgnoreCase));
	if (!bRecognized)
	{
		return Result;
	}

	Result->SetObjectField(TEXT("asset"), MakeObjectIdentityJson(Port.GetObjects(), Asset));
	FStateTreeReader Reader(Port);
	const FZorvekMCPBridgeObjectHandle EditorData = Port.GetReflection().FindProperty(Asset, TEXT("EditorData")).GetReferencedObject();
	if (EditorData.IsValid())
	{
		Reader.AddEditorData(Result, EditorData);
	}
	else
	{
		Result->SetStringField(TEXT("editor_data_status"), TEXT("not_available"));
	}
	Result->SetObjectField(TEXT("runtime"), Reader.MakeRuntimeCounts(Asset));
	return Result;
}
