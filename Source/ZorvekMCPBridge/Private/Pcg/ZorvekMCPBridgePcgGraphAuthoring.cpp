#include "Pcg/ZorvekMCPBridgePcgGraphAuthoring.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

const TCHAR* const ZorvekMCPBridgePcgGraphAuthoring::GraphClassPath = TEXT("/Script/PCG.PCGGraph");
const TCHAR* const ZorvekMCPBridgePcgGraphAuthoring::SurfaceSamplerClassPath = TEXT("/Script/PCG.PCGSurfaceSamplerSettings");
const TCHAR* const ZorvekMCPBridgePcgGraphAuthoring::DensityFilterClassPath = TEXT("/Script/PCG.PCGDensityFilterSettings");
const TCHAR* const ZorvekMCPBridgePcgGraphAuthoring::StaticMeshSpawnerClassPath = TEXT("/Script/PCG.PCGStaticMeshSpawnerSettings");
const TCHAR* const ZorvekMCPBridgePcgGraphAuthoring::SpawnActorClassPath = TEXT("/Script/PCG.PCGSpawnActorSettings");
const TCHAR* const ZorvekMCPBridgePcgGraphAuthoring::WeightedMeshSelectorClassPath = TEXT("/Script/PCG.PCGMeshSelectorWeighted");

namespace
{
	// The settings members pcg_inspect_graph reports, for the node kinds the forest uses.
	const TCHAR* const PcgGraphKeyProperties[] = {
		TEXT("Seed"),
		TEXT("PointsPerSquaredMeter"),
		TEXT("PointExtents"),
		TEXT("Looseness"),
		TEXT("bUnbounded"),
		TEXT("VoxelSize"),
		TEXT("LowerBound"),
		TEXT("UpperBound"),
		TEXT("bInvertFilter"),
		TEXT("MeshSelectorType"),
		TEXT("TemplateActorClass"),
		TEXT("TagsToAddOnActors"),
	};

	// A call of a UFunction by reflection: the function found on the object's class and its
	// parameter block, with parameters found by name.
	struct FPcgGraphCall
	{
		FZorvekMCPBridgeFunctionInfo Function;
		TUniquePtr<IZorvekMCPBridgeParameterBlock> Block;

		int32 FindParameter(const TCHAR* Name) const
		{
			for (int32 Index = 0; Index < Function.Parameters.Num(); ++Index)
			{
				if (Function.Parameters[Index].Name.Equals(Name, ESearchCase::IgnoreCase))
				{
					return Index;
				}
			}
			return INDEX_NONE;
		}

		int32 FindReturn() const
		{
			for (int32 Index = 0; Index < Function.Parameters.Num(); ++Index)
			{
				if (Function.Parameters[Index].Flags & ZorvekMCPBridgeParameterFlags::ReturnParm)
				{
					return Index;
				}
			}
			return INDEX_NONE;
		}
	};

	bool PreparePcgGraphCall(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* ObjectWord, const TCHAR* FunctionName, FPcgGraphCall& OutCall, FString& OutError)
	{
		if (!Object.IsValid())
		{
			OutError = FString::Printf(TEXT("%s was invalid."), ObjectWord);
			return false;
		}
		const FString ClassPath = Port.GetObjects().GetClassInfo(Object).Path;
		if (Port.GetFunctions().FindFunction(ClassPath, FunctionName, TArray<FString>(), OutCall.Function))
		{
			OutCall.Block = Port.GetFunctions().CreateParameterBlock(ClassPath, OutCall.Function.Name);
		}
		if (!OutCall.Block.IsValid())
		{
			OutError = FString::Printf(TEXT("%s did not expose %s."), ObjectWord, FunctionName);
			return false;
		}
		return true;
	}

	// A function that takes nothing and returns an object (GetInputNode, GetOutputNode).
	FZorvekMCPBridgeObjectHandle CallPcgObjectGetter(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* ObjectWord, const TCHAR* FunctionName)
	{
		FPcgGraphCall Call;
		FString Ignored;
		if (!PreparePcgGraphCall(Port, Object, ObjectWord, FunctionName, Call, Ignored) || Call.FindReturn() == INDEX_NONE)
		{
			return FZorvekMCPBridgeObjectHandle();
		}
		Port.GetFunctions().CallFunction(Object, *Call.Block);
		return Call.Block->GetObjectValue(Call.FindReturn());
	}

	FZorvekMCPBridgeObjectHandle ReadPcgObjectProperty(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName)
	{
		const FZorvekMCPBridgePropertyCursor Property = Port.GetReflection().FindProperty(Object, PropertyName);
		return Property.IsValid() ? Property.GetReferencedObject() : FZorvekMCPBridgeObjectHandle();
	}

	TArray<FZorvekMCPBridgeObjectHandle> ReadPcgObjectArray(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName)
	{
		TArray<FZorvekMCPBridgeObjectHandle> Objects;
		const FZorvekMCPBridgePropertyCursor Property = Port.GetReflection().FindProperty(Object, PropertyName);
		if (Property.IsValid() && Property.GetKind() == EZorvekMCPBridgePropertyKind::Array)
		{
			for (int32 Index = 0; Index < Property.GetArrayNum(); ++Index)
			{
				Objects.Add(Property.GetArrayElement(Index).GetReferencedObject());
			}
		}
		return Objects;
	}

	FString ReadPcgPinLabel(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Pin)
	{
		const FZorvekMCPBridgePropertyCursor Properties = Port.GetReflection().FindProperty(Pin, TEXT("Properties"));
		const FZorvekMCPBridgePropertyCursor Label = Properties.IsValid() ? Properties.FindStructField(TEXT("Label")) : FZorvekMCPBridgePropertyCursor();
		FString Text;
		if (Label.IsValid())
		{
			Label.ExportText(Text);
		}
		return Text;
	}

	TArray<TSharedPtr<FJsonValue>> ToPcgGraphStrings(const TArray<FString>& Texts)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FString& Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}
}

int32 FZorvekMCPBridgePcgGraphSnapshot::FindNodeBySettingsClass(IZorvekMCPBridgeEditorPort& Port, const FString& SettingsClassPath) const
{
	for (int32 Index = 0; Index < Nodes.Num(); ++Index)
	{
		if (Nodes[Index].Settings.IsValid() && Port.GetObjects().IsA(Nodes[Index].Settings, SettingsClassPath))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

int32 FZorvekMCPBridgePcgGraphSnapshot::FindRole(const FString& Role) const
{
	for (int32 Index = 0; Index < Nodes.Num(); ++Index)
	{
		if (Nodes[Index].Role == Role)
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

bool FZorvekMCPBridgePcgGraphSnapshot::HasEdge(int32 FromNode, const FString& FromPin, int32 ToNode, const FString& ToPin) const
{
	for (const FZorvekMCPBridgePcgEdgeSnapshot& Edge : Edges)
	{
		if (Edge.FromNode == FromNode && Edge.ToNode == ToNode && Edge.FromPin.Equals(FromPin, ESearchCase::IgnoreCase) && Edge.ToPin.Equals(ToPin, ESearchCase::IgnoreCase))
		{
			return true;
		}
	}
	return false;
}

bool ZorvekMCPBridgePcgGraphAuthoring::CreateGraphAsset(IZorvekMCPBridgeEditorPort& Port, const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle& OutGraph, FString& OutError)
{
	IZorvekMCPBridgeAssetAuthoring& Authoring = Port.GetAssetAuthoring();
	const FZorvekMCPBridgeObjectHandle Package = Authoring.CreateOrFindPackage(PackageName);
	OutGraph = Package.IsValid() ? Authoring.CreateAssetObject(Package, GraphClassPath, AssetName) : FZorvekMCPBridgeObjectHandle();
	if (!OutGraph.IsValid())
	{
		OutError = FString::Printf(TEXT("Could not create PCG graph asset '%s.%s'."), *PackageName, *AssetName);
		return false;
	}
	Authoring.NotifyAssetCreated(OutGraph);
	Authoring.MarkPackageDirty(OutGraph);
	return true;
}

bool ZorvekMCPBridgePcgGraphAuthoring::AddNodeOfType(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, const FString& SettingsClassPath, FZorvekMCPBridgeObjectHandle& OutNode, FZorvekMCPBridgeObjectHandle& OutSettings, FString& OutError)
{
	FPcgGraphCall Call;
	if (!PreparePcgGraphCall(Port, Graph, TEXT("PCG graph"), TEXT("AddNodeOfType"), Call, OutError))
	{
		return false;
	}
	const int32 ClassIndex = Call.FindParameter(TEXT("InSettingsClass"));
	const int32 SettingsIndex = Call.FindParameter(TEXT("DefaultNodeSettings"));
	const int32 ReturnIndex = Call.FindReturn();
	const FZorvekMCPBridgeObjectHandle SettingsClass = Port.GetObjects().LoadObject(SettingsClassPath);
	if (ClassIndex == INDEX_NONE || SettingsIndex == INDEX_NONE || ReturnIndex == INDEX_NONE || !SettingsClass.IsValid()
		|| !Call.Block->SetObjectValue(ClassIndex, SettingsClass))
	{
		OutError = FString::Printf(TEXT("PCG node settings class '%s' could not be used."), *SettingsClassPath);
		return false;
	}
	Port.GetFunctions().CallFunction(Graph, *Call.Block);
	OutNode = Call.Block->GetObjectValue(ReturnIndex);
	OutSettings = Call.Block->GetObjectValue(SettingsIndex);
	if (!OutNode.IsValid() || !OutSettings.IsValid())
	{
		OutError = FString::Printf(TEXT("PCG graph did not add a node of '%s'."), *SettingsClassPath);
		return false;
	}
	return true;
}

FZorvekMCPBridgeObjectHandle ZorvekMCPBridgePcgGraphAuthoring::GetInputNode(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph)
{
	return CallPcgObjectGetter(Port, Graph, TEXT("PCG graph"), TEXT("GetInputNode"));
}

FZorvekMCPBridgeObjectHandle ZorvekMCPBridgePcgGraphAuthoring::GetOutputNode(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph)
{
	return CallPcgObjectGetter(Port, Graph, TEXT("PCG graph"), TEXT("GetOutputNode"));
}

bool ZorvekMCPBridgePcgGraphAuthoring::SetSettingsProperty(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Settings, const FString& PropertyName, const FString& Text, FString& OutError)
{
	const IZorvekMCPBridgeReflection& Reflection = Port.GetReflection();
	const FZorvekMCPBridgePropertyCursor Property = Reflection.FindProperty(Settings, PropertyName);
	if (!Property.IsValid() || !Reflection.ImportText(Property, Text))
	{
		OutError = FString::Printf(TEXT("Could not set %s to '%s' on %s."), *PropertyName, *Text, *Port.GetObjects().GetIdentity(Settings).Name);
		return false;
	}
	return true;
}

FString ZorvekMCPBridgePcgGraphAuthoring::GetPropertyText(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName)
{
	const FZorvekMCPBridgePropertyCursor Property = Port.GetReflection().FindProperty(Object, PropertyName);
	FString Text;
	if (Property.IsValid())
	{
		Property.ExportText(Text);
	}
	return Text;
}

bool ZorvekMCPBridgePcgGraphAuthoring::SetWeightedMeshEntries(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle SpawnerSettings, const TArray<TPair<FString, int32>>& Meshes, FString& OutError)
{
	FPcgGraphCall Call;
	if (!PreparePcgGraphCall(Port, SpawnerSettings, TEXT("PCG static mesh spawner"), TEXT("SetMeshSelectorType"), Call, OutError))
	{
		return false;
	}
	const FZorvekMCPBridgeObjectHandle SelectorClass = Port.GetObjects().LoadObject(WeightedMeshSelectorClassPath);
	if (Call.Function.Parameters.Num() < 1 || !SelectorClass.IsValid() || !Call.Block->SetObjectValue(0, SelectorClass))
	{
		OutError = FString::Printf(TEXT("PCG mesh selector class '%s' could not be used."), WeightedMeshSelectorClassPath);
		return false;
	}
	Port.GetFunctions().CallFunction(SpawnerSettings, *Call.Block);
	const FZorvekMCPBridgeObjectHandle Selector = ReadPcgObjectProperty(Port, SpawnerSettings, TEXT("MeshSelectorParameters"));
	if (!Selector.IsValid())
	{
		OutError = TEXT("PCG static mesh spawner has no MeshSelectorParameters after SetMeshSelectorType.");
		return false;
	}
	// ((Descriptor=(StaticMesh="/Engine/BasicShapes/Cone.Cone"),Weight=1),...)
	TArray<FString> Entries;
	for (const TPair<FString, int32>& Mesh : Meshes)
	{
		Entries.Add(FString::Printf(TEXT("(Descriptor=(StaticMesh=\"%s\"),Weight=%d)"), *Mesh.Key, Mesh.Value));
	}
	return SetSettingsProperty(Port, Selector, TEXT("MeshEntries"), FString::Printf(TEXT("(%s)"), *FString::Join(Entries, TEXT(","))), OutError);
}

bool ZorvekMCPBridgePcgGraphAuthoring::AddEdge(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, FZorvekMCPBridgeObjectHandle From, const FString& FromPin, FZorvekMCPBridgeObjectHandle To, const FString& ToPin, FString& OutError)
{
	FPcgGraphCall Call;
	if (!PreparePcgGraphCall(Port, Graph, TEXT("PCG graph"), TEXT("AddEdge"), Call, OutError))
	{
		return false;
	}
	const int32 FromIndex = Call.FindParameter(TEXT("From"));
	const int32 FromPinIndex = Call.FindParameter(TEXT("FromPinLabel"));
	const int32 ToIndex = Call.FindParameter(TEXT("To"));
	const int32 ToPinIndex = Call.FindParameter(TEXT("ToPinLabel"));
	if (FromIndex == INDEX_NONE || FromPinIndex == INDEX_NONE || ToIndex == INDEX_NONE || ToPinIndex == INDEX_NONE)
	{
		OutError = TEXT("PCG graph AddEdge has unexpected parameters.");
		return false;
	}
	Call.Block->SetObjectValue(FromIndex, From);
	Call.Block->SetStringValue(FromPinIndex, FromPin);
	Call.Block->SetObjectValue(ToIndex, To);
	Call.Block->SetStringValue(ToPinIndex, ToPin);
	Port.GetFunctions().CallFunction(Graph, *Call.Block);

	// AddEdge answers To even when a label matched no pin: read the edge back.
	const FString FromName = Port.GetObjects().GetIdentity(From).Name;
	const FString ToName = Port.GetObjects().GetIdentity(To).Name;
	for (const FZorvekMCPBridgeObjectHandle Pin : ReadPcgObjectArray(Port, From, TEXT("OutputPins")))
	{
		if (!ReadPcgPinLabel(Port, Pin).Equals(FromPin, ESearchCase::IgnoreCase))
		{
			continue;
		}
		for (const FZorvekMCPBridgeObjectHandle Edge : ReadPcgObjectArray(Port, Pin, TEXT("Edges")))
		{
			const FZorvekMCPBridgeObjectHandle Downstream = ReadPcgObjectProperty(Port, Edge, TEXT("OutputPin"));
			if (ReadPcgObjectProperty(Port, Downstream, TEXT("Node")) == To && ReadPcgPinLabel(Port, Downstream).Equals(ToPin, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
	}
	OutError = FString::Printf(TEXT("PCG graph did not connect %s.%s to %s.%s."), *FromName, *FromPin, *ToName, *ToPin);
	return false;
}

bool ZorvekMCPBridgePcgGraphAuthoring::NotifyEditor(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, FString& OutError)
{
	FPcgGraphCall Call;
	if (!PreparePcgGraphCall(Port, Graph, TEXT("PCG graph"), TEXT("ForceNotificationForEditor"), Call, OutError))
	{
		return false;
	}
	// A call by reflection gets no C++ default argument: the change type is set by name.
	// Not in the reference notes; check against the engine: the enum name import of the bit
	// flag EPCGChangeType through FJsonObjectConverter.
	if (Call.Function.Parameters.Num() > 0)
	{
		Call.Block->ImportJsonValue(0, MakeShared<FJsonValueString>(TEXT("Structural")));
	}
	Port.GetFunctions().CallFunction(Graph, *Call.Block);
	return true;
}

bool ZorvekMCPBridgePcgGraphAuthoring::ReadGraph(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, FZorvekMCPBridgePcgGraphSnapshot& OutGraph)
{
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	if (!Graph.IsValid() || !Objects.IsA(Graph, GraphClassPath))
	{
		return false;
	}
	OutGraph = FZorvekMCPBridgePcgGraphSnapshot();
	OutGraph.GraphPath = Objects.GetIdentity(Graph).ObjectPath;
	TArray<TPair<FZorvekMCPBridgeObjectHandle, FString>> NodeList;
	NodeList.Add({ReadPcgObjectProperty(Port, Graph, TEXT("InputNode")), TEXT("input")});
	NodeList.Add({ReadPcgObjectProperty(Port, Graph, TEXT("OutputNode")), TEXT("output")});
	for (const FZorvekMCPBridgeObjectHandle Node : ReadPcgObjectArray(Port, Graph, TEXT("Nodes")))
	{
		NodeList.Add({Node, TEXT("node")});
	}
	TMap<FZorvekMCPBridgeObjectHandle, int32> NodeIndices;
	for (const TPair<FZorvekMCPBridgeObjectHandle, FString>& Entry : NodeList)
	{
		if (!Entry.Key.IsValid() || NodeIndices.Contains(Entry.Key))
		{
			continue;
		}
		FZorvekMCPBridgePcgNodeSnapshot Node;
		Node.Node = Entry.Key;
		Node.Role = Entry.Value;
		Node.Name = Objects.GetIdentity(Entry.Key).Name;
		Node.Settings = ReadPcgObjectProperty(Port, Entry.Key, TEXT("SettingsInterface"));
		Node.SettingsClassPath = Node.Settings.IsValid() ? Objects.GetClassInfo(Node.Settings).Path : FString();
		for (const FZorvekMCPBridgeObjectHandle Pin : ReadPcgObjectArray(Port, Entry.Key, TEXT("InputPins")))
		{
			Node.InputPins.Add(ReadPcgPinLabel(Port, Pin));
		}
		for (const FZorvekMCPBridgeObjectHandle Pin : ReadPcgObjectArray(Port, Entry.Key, TEXT("OutputPins")))
		{
			Node.OutputPins.Add(ReadPcgPinLabel(Port, Pin));
		}
		NodeIndices.Add(Entry.Key, OutGraph.Nodes.Num());
		OutGraph.Nodes.Add(Node);
	}
	// Edges from each node's output pins, in node and pin order.
	for (int32 NodeIndex = 0; NodeIndex < OutGraph.Nodes.Num(); ++NodeIndex)
	{
		for (const FZorvekMCPBridgeObjectHandle Pin : ReadPcgObjectArray(Port, OutGraph.Nodes[NodeIndex].Node, TEXT("OutputPins")))
		{
			const FString FromPin = ReadPcgPinLabel(Port, Pin);
			for (const FZorvekMCPBridgeObjectHandle Edge : ReadPcgObjectArray(Port, Pin, TEXT("Edges")))
			{
				const FZorvekMCPBridgeObjectHandle Downstream = ReadPcgObjectProperty(Port, Edge, TEXT("OutputPin"));
				const int32* ToIndex = NodeIndices.Find(ReadPcgObjectProperty(Port, Downstream, TEXT("Node")));
				if (ReadPcgObjectProperty(Port, Edge, TEXT("InputPin")) != Pin || !ToIndex)
				{
					continue;
				}
				FZorvekMCPBridgePcgEdgeSnapshot Snapshot;
				Snapshot.FromNode = NodeIndex;
				Snapshot.FromPin = FromPin;
				Snapshot.ToNode = *ToIndex;
				Snapshot.ToPin = ReadPcgPinLabel(Port, Downstream);
				OutGraph.Edges.Add(Snapshot);
			}
		}
	}
	return true;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgGraphAuthoring::MakeGraphJson(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePcgGraphSnapshot& Graph)
{
	const IZorvekMCPBridgeReflection& Reflection = Port.GetReflection();
	TArray<TSharedPtr<FJsonValue>> Nodes;
	for (int32 Index = 0; Index < Graph.Nodes.Num(); ++Index)
	{
		const FZorvekMCPBridgePcgNodeSnapshot& Node = Graph.Nodes[Index];
		TSharedPtr<FJsonObject> Properties = MakeShared<FJsonObject>();
		for (const TCHAR* Name : PcgGraphKeyProperties)
		{
			const FZorvekMCPBridgePropertyCursor Property = Node.Settings.IsValid() ? Reflection.FindProperty(Node.Settings, Name) : FZorvekMCPBridgePropertyCursor();
			FString Text;
			if (Property.IsValid() && Property.ExportText(Text))
			{
				Properties->SetStringField(Name, Text);
			}
		}
		const FZorvekMCPBridgeObjectHandle Selector = Node.Settings.IsValid() ? ReadPcgObjectProperty(Port, Node.Settings, TEXT("MeshSelectorParameters")) : FZorvekMCPBridgeObjectHandle();
		if (Selector.IsValid())
		{
			Properties->SetStringField(TEXT("MeshEntries"), GetPropertyText(Port, Selector, TEXT("MeshEntries")));
		}
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetNumberField(TEXT("index"), Index);
		Entry->SetStringField(TEXT("name"), Node.Name);
		Entry->SetStringField(TEXT("role"), Node.Role);
		Entry->SetStringField(TEXT("settings_class_path"), Node.SettingsClassPath);
		Entry->SetArrayField(TEXT("input_pins"), ToPcgGraphStrings(Node.InputPins));
		Entry->SetArrayField(TEXT("output_pins"), ToPcgGraphStrings(Node.OutputPins));
		Entry->SetObjectField(TEXT("properties"), Properties);
		Nodes.Add(MakeShared<FJsonValueObject>(Entry));
	}
	TArray<TSharedPtr<FJsonValue>> Edges;
	for (const FZorvekMCPBridgePcgEdgeSnapshot& Edge : Graph.Edges)
	{
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetNumberField(TEXT("from_node"), Edge.FromNode);
		Entry->SetStringField(TEXT("from_pin"), Edge.FromPin);
		Entry->SetNumberField(TEXT("to_node"), Edge.ToNode);
		Entry->SetStringField(TEXT("to_pin"), Edge.ToPin);
		Edges.Add(MakeShared<FJsonValueObject>(Entry));
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("graph_path"), Graph.GraphPath);
	Result->SetNumberField(TEXT("node_count"), Graph.Nodes.Num());
	Result->SetArrayField(TEXT("nodes"), Nodes);
	Result->SetNumberField(TEXT("edge_count"), Graph.Edges.Num());
	Result->SetArrayField(TEXT("edges"), Edges);
	return Result;
}
