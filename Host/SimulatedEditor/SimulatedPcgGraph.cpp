// The PCG graph classes' UFUNCTIONs in the simulated editor: UPCGGraph::AddNodeOfType, AddEdge,
// GetInputNode, GetOutputNode and ForceNotificationForEditor, UPCGNode::AddEdgeTo,
// UPCGStaticMeshSpawnerSettings::SetMeshSelectorType, and the graph's constructor, which makes the
// input and output nodes as default subobjects.
#include "SimulatedPcg.h"

#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "SimulatedEditor.h"
#include "SimulatedWorld.h"


namespace
{
	const TCHAR* const SimPcgGraphClassPath = TEXT("/Script/PCG.PCGGraph");
	const TCHAR* const SimPcgNodeClassPath = TEXT("/Script/PCG.PCGNode");
	const TCHAR* const SimPcgPinClassPath = TEXT("/Script/PCG.PCGPin");
	const TCHAR* const SimPcgEdgeClassPath = TEXT("/Script/PCG.PCGEdge");
	const TCHAR* const SimPcgSettingsClassPath = TEXT("/Script/PCG.PCGSettings");
	const TCHAR* const SimPcgInputOutputSettingsClassPath = TEXT("/Script/PCG.PCGGraphInputOutputSettings");
	const TCHAR* const SimPcgStaticMeshSpawnerClassPath = TEXT("/Script/PCG.PCGStaticMeshSpawnerSettings");
	const TCHAR* const SimPcgMeshSelectorBaseClassPath = TEXT("/Script/PCG.PCGMeshSelectorBase");

	// The pins a node of a settings class has in 5.7: (inputs, outputs). Samplers take the surface
	// (or volume) and an optional bounding shape; most other nodes have "In" and "Out".
	struct FSimPcgPinLayout
	{
		const TCHAR* SettingsClassPath;
		TArray<FString> Inputs;
		TArray<FString> Outputs;
	};

	const TArray<FSimPcgPinLayout>& GetSimPcgPinLayouts()
	{
		static const TArray<FSimPcgPinLayout> Layouts = {
			{TEXT("/Script/PCG.PCGSurfaceSamplerSettings"), {TEXT("Surface"), TEXT("Bounding Shape")}, {TEXT("Out")}},
			{TEXT("/Script/PCG.PCGVolumeSamplerSettings"), {TEXT("Volume"), TEXT("Bounding Shape")}, {TEXT("Out")}},
		};
		return Layouts;
	}

	FSimulatedValue* SimPcgGraphField(FSimulatedValue& StructValue, const FSimulatedType* Struct, const TCHAR* FieldName)
	{
		const int32 Index = Struct ? Struct->FindPropertyIndex(FieldName) : INDEX_NONE;
		return Index == INDEX_NONE || Index >= (int32)StructValue.Items.size() ? nullptr : &StructValue.Items[(size_t)Index];
	}

	// The short name of a class path: /Script/PCG.PCGSurfaceSamplerSettings -> PCGSurfaceSamplerSettings.
	FString SimPcgShortName(const FSimulatedObject& Object)
	{
		return Object.Name;
	}
}

FString FSimulatedPcg::MakeUniqueName(const FSimulatedObject& Outer, const FString& Base) const
{
	// MakeUniqueObjectName: Base_0, Base_1... the first free one.
	const FString OuterPath = Outer.GetPathName();
	const TCHAR* Separator = Outer.IsPackage() ? TEXT(".") : (Outer.Outer && Outer.Outer->IsPackage() ? TEXT(":") : TEXT("."));
	for (int32 Number = 0;; ++Number)
	{
		const FString Name = FString::Printf(TEXT("%s_%d"), *Base, Number);
		if (!World.GetEditor().FindObject(OuterPath + Separator + Name))
		{
			return Name;
		}
	}
}

FSimulatedObject* FSimulatedPcg::CreatePin(FSimulatedObject& Node, const FString& Label, const TCHAR* PinListName)
{
	FSimulatedEditor& Editor = World.GetEditor();
	FString Ignored;
	FSimulatedObject* Pin = Editor.CreateObject(Editor.FindTypeByPath(SimPcgPinClassPath), &Node, MakeUniqueName(Node, TEXT("PCGPin")), Ignored);
	if (!Pin)
	{
		return nullptr;
	}
	if (FSimulatedValue* Owner = World.FindValue(*Pin, TEXT("Node")))
	{
		Owner->Object = &Node;
	}
	const int32 PropertiesIndex = Pin->Class->FindPropertyIndex(TEXT("Properties"));
	if (PropertiesIndex != INDEX_NONE)
	{
		if (FSimulatedValue* PinLabel = SimPcgGraphField(Pin->Values[(size_t)PropertiesIndex], Pin->Class->AllProperties[(size_t)PropertiesIndex]->TypeObject, TEXT("Label")))
		{
			PinLabel->Text = Label;
		}
	}
	if (FSimulatedValue* Pins = World.FindValue(Node, PinListName))
	{
		FSimulatedValue Item;
		Item.Object = Pin;
		Pins->Items.push_back(Item);
	}
	return Pin;
}

FSimulatedObject* FSimulatedPcg::CreateNode(FSimulatedObject& Graph, const FString& NodeName, FSimulatedObject* Settings, const TArray<FString>& InputLabels, const TArray<FString>& OutputLabels)
{
	FSimulatedEditor& Editor = World.GetEditor();
	FString Ignored;
	FSimulatedObject* Node = Editor.CreateObject(Editor.FindTypeByPath(SimPcgNodeClassPath), &Graph, NodeName, Ignored);
	if (!Node)
	{
		return nullptr;
	}
	if (FSimulatedValue* SettingsValue = World.FindValue(*Node, TEXT("SettingsInterface")))
	{
		SettingsValue->Object = Settings;
	}
	for (const FString& Label : InputLabels)
	{
		CreatePin(*Node, Label, TEXT("InputPins"));
	}
	for (const FString& Label : OutputLabels)
	{
		CreatePin(*Node, Label, TEXT("OutputPins"));
	}
	return Node;
}

void FSimulatedPcg::ConstructGraph(FSimulatedObject& Graph)
{
	// UPCGGraph's constructor: DefaultInputNode and DefaultOutputNode with their settings, default
	// subobjects of the graph. The input node's first output pin carries the component's actor
	// ("Input"); the output node collects on "Out". Neither is listed in Nodes.
	// Not in the reference notes beyond "Input"/"Out"; check against the engine: the input node
	// has further output pins (landscape and the original actor) the simulation leaves out.
	FSimulatedEditor& Editor = World.GetEditor();
	FSimulatedType* InputOutputClass = Editor.FindTypeByPath(SimPcgInputOutputSettingsClassPath);
	if (!InputOutputClass)
	{
		return;
	}
	FString Ignored;
	FSimulatedObject* InputSettings = Editor.CreateObject(InputOutputClass, &Graph, TEXT("DefaultInputNodeSettings"), Ignored);
	FSimulatedObject* OutputSettings = Editor.CreateObject(InputOutputClass, &Graph, TEXT("DefaultOutputNodeSettings"), Ignored);
	FSimulatedObject* InputNode = CreateNode(Graph, TEXT("DefaultInputNode"), InputSettings, {}, {TEXT("Input")});
	FSimulatedObject* OutputNode = CreateNode(Graph, TEXT("DefaultOutputNode"), OutputSettings, {TEXT("Out")}, {});
	for (FSimulatedObject* Subobject : {InputSettings, OutputSettings, InputNode, OutputNode})
	{
		if (Subobject)
		{
			Subobject->bDefaultSubobject = true;
		}
	}
	if (FSimulatedValue* Value = World.FindValue(Graph, TEXT("InputNode")))
	{
		Value->Object = InputNode;
	}
	if (FSimulatedValue* Value = World.FindValue(Graph, TEXT("OutputNode")))
	{
		Value->Object = OutputNode;
	}
}

FSimulatedObject* FSimulatedPcg::AddNodeOfType(FSimulatedObject& Graph, FSimulatedType* SettingsClass, FSimulatedObject*& OutSettings)
{
	OutSettings = nullptr;
	FSimulatedEditor& Editor = World.GetEditor();
	const FSimulatedType* SettingsBase = Editor.FindTypeByPath(SimPcgSettingsClassPath);
	if (!SettingsClass || !SettingsBase || SettingsClass->Kind != ESimulatedTypeKind::Class || !SettingsClass->IsChildOf(SettingsBase)
		|| (SettingsClass->ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0)
	{
		return nullptr;
	}
	// The node is named as NewObject names it; its settings live inside it.
	// Not in the reference notes; check against the engine: the settings' outer and name.
	const FString NodeName = MakeUniqueName(Graph, TEXT("PCGNode"));
	TArray<FString> Inputs = {TEXT("In")};
	TArray<FString> Outputs = {TEXT("Out")};
	for (const FSimPcgPinLayout& Layout : GetSimPcgPinLayouts())
	{
		if (SettingsClass->GetPathName() == Layout.SettingsClassPath)
		{
			Inputs = Layout.Inputs;
			Outputs = Layout.Outputs;
		}
	}
	FSimulatedObject* Node = CreateNode(Graph, NodeName, nullptr, Inputs, Outputs);
	if (!Node)
	{
		return nullptr;
	}
	FString Ignored;
	FSimulatedObject* Settings = Editor.CreateObject(SettingsClass, Node, MakeUniqueName(*Node, SimPcgShortName(*SettingsClass)), Ignored);
	if (FSimulatedValue* SettingsValue = World.FindValue(*Node, TEXT("SettingsInterface")))
	{
		SettingsValue->Object = Settings;
	}
	if (FSimulatedValue* Nodes = World.FindValue(Graph, TEXT("Nodes")))
	{
		FSimulatedValue Item;
		Item.Object = Node;
		Nodes->Items.push_back(Item);
	}
	OutSettings = Settings;
	return Node;
}

FSimulatedObject* FSimulatedPcg::FindPin(const FSimulatedObject& Node, bool bOutputPin, const FString& Label) const
{
	const FSimulatedValue* Pins = World.FindValue(Node, bOutputPin ? TEXT("OutputPins") : TEXT("InputPins"));
	for (const FSimulatedValue& Item : Pins ? Pins->Items : std::vector<FSimulatedValue>())
	{
		FSimulatedObject* Pin = Item.Object;
		const int32 PropertiesIndex = Pin ? Pin->Class->FindPropertyIndex(TEXT("Properties")) : INDEX_NONE;
		if (PropertiesIndex == INDEX_NONE)
		{
			continue;
		}
		FSimulatedValue Properties = Pin->Values[(size_t)PropertiesIndex];
		const FSimulatedValue* PinLabel = SimPcgGraphField(Properties, Pin->Class->AllProperties[(size_t)PropertiesIndex]->TypeObject, TEXT("Label"));
		if (PinLabel && PinLabel->Text.Equals(Label, ESearchCase::IgnoreCase))
		{
			return Pin;
		}
	}
	return nullptr;
}

bool FSimulatedPcg::AddEdge(FSimulatedObject& Graph, FSimulatedObject* From, const FString& FromPinLabel, FSimulatedObject* To, const FString& ToPinLabel)
{
	// UPCGGraph::AddLabeledEdge: both nodes, the From node's output pin and the To node's input pin
	// must exist (the engine logs an error otherwise); an existing edge is not doubled.
	if (!From || !To || From->Outer != &Graph || To->Outer != &Graph)
	{
		return false;
	}
	FSimulatedObject* FromPin = FindPin(*From, true, FromPinLabel);
	FSimulatedObject* ToPin = FindPin(*To, false, ToPinLabel);
	FSimulatedValue* FromEdges = FromPin ? World.FindValue(*FromPin, TEXT("Edges")) : nullptr;
	FSimulatedValue* ToEdges = ToPin ? World.FindValue(*ToPin, TEXT("Edges")) : nullptr;
	if (!FromEdges || !ToEdges)
	{
		return false;
	}
	for (const FSimulatedValue& Item : FromEdges->Items)
	{
		const FSimulatedValue* OtherEnd = Item.Object ? World.FindValue(*Item.Object, TEXT("OutputPin")) : nullptr;
		if (OtherEnd && OtherEnd->Object == ToPin)
		{
			return false;
		}
	}
	FSimulatedEditor& Editor = World.GetEditor();
	FString Ignored;
	FSimulatedObject* Edge = Editor.CreateObject(Editor.FindTypeByPath(SimPcgEdgeClassPath), FromPin, MakeUniqueName(*FromPin, TEXT("PCGEdge")), Ignored);
	if (!Edge)
	{
		return false;
	}
	World.FindValue(*Edge, TEXT("InputPin"))->Object = FromPin;
	World.FindValue(*Edge, TEXT("OutputPin"))->Object = ToPin;
	FSimulatedValue Item;
	Item.Object = Edge;
	FromEdges->Items.push_back(Item);
	ToEdges->Items.push_back(Item);
	return true;
}

void FSimulatedPcg::BindGraphFunctions()
{
	FSimulatedEditor& Editor = World.GetEditor();
	const auto Bind = [&Editor](const TCHAR* ClassPath, const TCHAR* FunctionName, FSimulatedFunctionBody Body)
	{
		FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
		for (const std::shared_ptr<FSimulatedFunction>& Function : Class ? Class->Functions : std::vector<std::shared_ptr<FSimulatedFunction>>())
		{
			if (Function->Name.Equals(FunctionName, ESearchCase::IgnoreCase))
			{
				Function->Body = Body;
			}
		}
	};
	if (const FSimulatedType* GraphClass = Editor.FindTypeByPath(SimPcgGraphClassPath))
	{
		Editor.SetClassConstructor(GraphClass, [this](FSimulatedObject& Graph)
		{
			ConstructGraph(Graph);
		});
	}
	// AddNodeOfType(InSettingsClass, DefaultNodeSettings&) -> node.
	Bind(SimPcgGraphClassPath, TEXT("AddNodeOfType"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		if (Parameters.size() < 3)
		{
			return;
		}
		FSimulatedObject* Settings = nullptr;
		Parameters[2].Object = AddNodeOfType(Self, dynamic_cast<FSimulatedType*>(Parameters[0].Object), Settings);
		Parameters[1].Object = Settings;
	});
	// AddEdge(From, FromPinLabel, To, ToPinLabel) -> To, whether or not the edge was made.
	Bind(SimPcgGraphClassPath, TEXT("AddEdge"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		if (Parameters.size() < 5)
		{
			return;
		}
		AddEdge(Self, Parameters[0].Object, Parameters[1].Text, Parameters[2].Object, Parameters[3].Text);
		Parameters[4].Object = Parameters[2].Object;
	});
	for (const TCHAR* Name : {TEXT("GetInputNode"), TEXT("GetOutputNode")})
	{
		const FString Property = FString(Name).RightChop(3);
		Bind(SimPcgGraphClassPath, Name, [this, Property](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
		{
			const FSimulatedValue* Node = World.FindValue(Self, Property);
			if (!Parameters.empty())
			{
				Parameters.back().Object = Node ? Node->Object : nullptr;
			}
		});
	}
	Bind(SimPcgGraphClassPath, TEXT("ForceNotificationForEditor"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>&)
	{
		++EditorNotifications[&Self];
	});
	// UPCGNode::AddEdgeTo(FromPinLabel, To, ToPinLabel): the node's graph adds the edge.
	Bind(SimPcgNodeClassPath, TEXT("AddEdgeTo"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		if (Parameters.size() < 4 || !Self.Outer)
		{
			return;
		}
		AddEdge(*Self.Outer, &Self, Parameters[0].Text, Parameters[1].Object, Parameters[2].Text);
		Parameters[3].Object = Parameters[1].Object;
	});
	// SetMeshSelectorType: the selector class, and a new parameters object of it (the instanced
	// MeshSelectorParameters the mesh entries live in). Setting MeshSelectorType by reflection
	// alone creates no parameters object.
	Bind(SimPcgStaticMeshSpawnerClassPath, TEXT("SetMeshSelectorType"), [this, &Editor](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		FSimulatedType* SelectorClass = Parameters.empty() ? nullptr : dynamic_cast<FSimulatedType*>(Parameters[0].Object);
		const FSimulatedType* SelectorBase = Editor.FindTypeByPath(SimPcgMeshSelectorBaseClassPath);
		if (!SelectorClass || !SelectorBase || !SelectorClass->IsChildOf(SelectorBase) || (SelectorClass->ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0)
		{
			return;
		}
		FSimulatedValue* SelectorType = World.FindValue(Self, TEXT("MeshSelectorType"));
		FSimulatedValue* SelectorParameters = World.FindValue(Self, TEXT("MeshSelectorParameters"));
		if (!SelectorType || !SelectorParameters)
		{
			return;
		}
		FString Ignored;
		SelectorType->Object = SelectorClass;
		SelectorParameters->Object = Editor.CreateObject(SelectorClass, &Self, MakeUniqueName(Self, SelectorClass->Name), Ignored);
	});
}
