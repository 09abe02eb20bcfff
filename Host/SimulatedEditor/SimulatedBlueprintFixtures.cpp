// Builds the Blueprints of a fixture through the simulated Blueprint editor (see
// SimulatedBlueprintFixtures.h and SampleProject/README.md for the format).
#include "SimulatedBlueprintFixtures.h"

#include "Dom/JsonValue.h"
#include "SimulatedBlueprint.h"
#include "SimulatedEditor.h"

namespace
{
	const TCHAR* const SimFixtureStandardMacrosPath = TEXT("/Engine/EditorBlueprintResources/StandardMacros.StandardMacros");

	const TArray<TSharedPtr<FJsonValue>>& SimFixtureArray(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
	{
		static const TArray<TSharedPtr<FJsonValue>> Empty;
		const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
		return Object.IsValid() && Object->TryGetArrayField(Key, Values) ? *Values : Empty;
	}

	FString SimFixtureString(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
	{
		FString Value;
		if (Object.IsValid())
		{
			Object->TryGetStringField(Key, Value);
		}
		return Value;
	}

	int32 SimFixtureInt(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key, int32 Default)
	{
		double Value = Default;
		if (Object.IsValid())
		{
			Object->TryGetNumberField(Key, Value);
		}
		return (int32)Value;
	}

	bool SimFixtureBlueprintType(const FString& Word, EZorvekMCPBridgeBlueprintType& OutType)
	{
		struct FTypeWord
		{
			const TCHAR* Word;
			EZorvekMCPBridgeBlueprintType Type;
		};
		const FTypeWord Words[] = {{TEXT(""), EZorvekMCPBridgeBlueprintType::Normal}, {TEXT("Normal"), EZorvekMCPBridgeBlueprintType::Normal},
			{TEXT("Const"), EZorvekMCPBridgeBlueprintType::Const}, {TEXT("MacroLibrary"), EZorvekMCPBridgeBlueprintType::MacroLibrary},
			{TEXT("Interface"), EZorvekMCPBridgeBlueprintType::Interface}, {TEXT("FunctionLibrary"), EZorvekMCPBridgeBlueprintType::FunctionLibrary}};
		for (const FTypeWord& Type : Words)
		{
			if (Word.Equals(Type.Word, ESearchCase::CaseSensitive))
			{
				OutType = Type.Type;
				return true;
			}
		}
		return false;
	}

	// One Blueprint under construction: the graph being filled and its nodes by fixture id.
	class FSimFixtureBuilder
	{
	public:
		FSimFixtureBuilder(FSimulatedBlueprints& InBlueprints, FSimulatedBlueprint& InBlueprint, FString& InError)
			: Blueprints(InBlueprints)
			, Editor(InBlueprints.GetEditor())
			, Blueprint(InBlueprint)
			, Error(InError)
		{
		}

		bool Build(const TSharedPtr<FJsonObject>& Json)
		{
			if (!AddVariables(Json) || !AddInterfaces(Json) || !AddFunctions(Json) || !AddMacros(Json) || !AddComponents(Json))
			{
				return false;
			}
			// Members first, compiled, then the graphs: as in the editor, calls of the Blueprint's
			// own functions are placed once its class has them.
			Blueprints.Compile(Blueprint);
			return FillGraphs(Json);
		}

	private:
		bool Fail(const FString& Where, const FString& Message)
		{
			Error = FString::Printf(TEXT("%s: %s"), *Where, *Message);
			return false;
		}

		// Property type texts, plus set:<type> and map:<key type>,<value type> for the containers
		// the simulated reflection has no property for, and exec and wildcard for tunnel pins.
		bool ParsePinType(const FString& Text, FZorvekMCPBridgePinType& OutPinType, FString& OutError) const
		{
			// Pin-only types of tunnels and events: exec and wildcard (also as array elements).
			const FString Element = Text.StartsWith(TEXT("array:"), ESearchCase::CaseSensitive) ? Text.Mid(6) : Text;
			if (Text == TEXT("array:exec"))
			{
				OutError = TEXT("exec pins are no arrays");
				return false;
			}
			if (Element == TEXT("exec") || Element == TEXT("wildcard"))
			{
				OutPinType.ResetToDefaults();
				OutPinType.PinCategory = Element == TEXT("exec") ? FZorvekMCPBridgePinCategories::PC_Exec : FName(TEXT("wildcard"));
				OutPinType.ContainerType = Element == Text ? EZorvekMCPBridgePinContainerType::None : EZorvekMCPBridgePinContainerType::Array;
				return true;
			}
			if (Text.StartsWith(TEXT("set:"), ESearchCase::CaseSensitive))
			{
				if (!ParsePinType(Text.Mid(4), OutPinType, OutError))
				{
					return false;
				}
				if (OutPinType.IsContainer())
				{
					OutError = FString::Printf(TEXT("'%s' nests containers"), *Text);
					return false;
				}
				OutPinType.ContainerType = EZorvekMCPBridgePinContainerType::Set;
				return true;
			}
			FString KeyText;
			FString ValueText;
			if (Text.StartsWith(TEXT("map:"), ESearchCase::CaseSensitive))
			{
				FZorvekMCPBridgePinType ValueType;
				if (!Text.Mid(4).Split(TEXT(","), &KeyText, &ValueText) || !ParsePinType(KeyText, OutPinType, OutError) || !ParsePinType(ValueText, ValueType, OutError))
				{
					OutError = OutError.IsEmpty() ? FString::Printf(TEXT("'%s' is not map:<key type>,<value type>"), *Text) : OutError;
					return false;
				}
				if (OutPinType.IsContainer() || ValueType.IsContainer())
				{
					OutError = FString::Printf(TEXT("'%s' nests containers"), *Text);
					return false;
				}
				OutPinType.ContainerType = EZorvekMCPBridgePinContainerType::Map;
				OutPinType.PinValueType.TerminalCategory = ValueType.PinCategory;
				OutPinType.PinValueType.TerminalSubCategory = ValueType.PinSubCategory;
				OutPinType.PinValueType.TerminalSubCategoryObject = ValueType.PinSubCategoryObject;
				return true;
			}
			const std::shared_ptr<FSimulatedProperty> Property = Editor.MakeProperty(TEXT("Value"), Text, 0, OutError);
			if (!Property || !FSimulatedBlueprints::GetPinTypeFromProperty(*Property, OutPinType))
			{
				OutError = Property ? FString::Printf(TEXT("'%s' has no pin type"), *Text) : OutError.LeftChop(1);
				return false;
			}
			return true;
		}

		bool AddVariables(const TSharedPtr<FJsonObject>& Json)
		{
			for (const TSharedPtr<FJsonValue>& Value : SimFixtureArray(Json, TEXT("variables")))
			{
				const TSharedPtr<FJsonObject> Variable = Value->AsObject();
				const FString Name = SimFixtureString(Variable, TEXT("name"));
				const FString Where = FString::Printf(TEXT("variable %s"), *Name);
				FZorvekMCPBridgePinType PinType;
				FString TypeError;
				if (!ParsePinType(SimFixtureString(Variable, TEXT("type")), PinType, TypeError))
				{
					return Fail(Where, TypeError);
				}
				if (!Blueprints.AddMemberVariable(Blueprint, FName(*Name), PinType, SimFixtureString(Variable, TEXT("default"))))
				{
					return Fail(Where, TEXT("the editor refuses the variable (name taken or invalid)"));
				}
				const FString Category = SimFixtureString(Variable, TEXT("category"));
				if (!Category.IsEmpty())
				{
					Blueprints.SetVariableCategory(Blueprint, FName(*Name), Category);
				}
			}
			return true;
		}

		bool AddInterfaces(const TSharedPtr<FJsonObject>& Json)
		{
			for (const TSharedPtr<FJsonValue>& Value : SimFixtureArray(Json, TEXT("interfaces")))
			{
				const FString Path = Value->AsString();
				FSimulatedType* Interface = Editor.FindTypeByPath(Path);
				FString Message;
				if (!Interface)
				{
					return Fail(FString::Printf(TEXT("interface %s"), *Path), TEXT("is not a class of the fixture (interface Blueprints come before the Blueprints that implement them)"));
				}
				if (!Blueprints.ImplementNewInterface(Blueprint, Interface, Message))
				{
					return Fail(FString::Printf(TEXT("interface %s"), *Path), Message);
				}
			}
			return true;
		}

		bool AddUserPins(FSimulatedNode& Node, const TArray<TSharedPtr<FJsonValue>>& Pins, EZorvekMCPBridgePinDirection Direction, const FString& Where)
		{
			for (const TSharedPtr<FJsonValue>& Value : Pins)
			{
				const TSharedPtr<FJsonObject> Pin = Value->AsObject();
				const FString Name = SimFixtureString(Pin, TEXT("name"));
				FZorvekMCPBridgePinType PinType;
				FString TypeError;
				if (!ParsePinType(SimFixtureString(Pin, TEXT("type")), PinType, TypeError))
				{
					return Fail(FString::Printf(TEXT("%s pin %s"), *Where, *Name), TypeError);
				}
				if (!Blueprints.CreateUserDefinedPin(Node, FName(*Name), PinType, Direction, SimFixtureString(Pin, TEXT("default"))))
				{
					return Fail(FString::Printf(TEXT("%s pin %s"), *Where, *Name), TEXT("could not be created"));
				}
			}
			return true;
		}

		bool AddFunctions(const TSharedPtr<FJsonObject>& Json)
		{
			for (const TSharedPtr<FJsonValue>& Value : SimFixtureArray(Json, TEXT("functions")))
			{
				const TSharedPtr<FJsonObject> Function = Value->AsObject();
				const FString Name = SimFixtureString(Function, TEXT("name"));
				const FString Where = FString::Printf(TEXT("function %s"), *Name);
				if (Name.IsEmpty() || !Blueprints.IsGraphNameUnique(Blueprint, Name))
				{
					return Fail(Where, TEXT("needs a name no graph of the Blueprint has"));
				}
				FSimulatedGraph* Graph = Blueprints.AddFunctionGraph(Blueprint, Blueprints.CreateNewGraph(Blueprint, Name));
				FSimulatedNode* Entry = Graph ? Graph->FindNodeOfClass(TEXT("K2Node_FunctionEntry")) : nullptr;
				if (!Entry || !AddUserPins(*Entry, SimFixtureArray(Function, TEXT("inputs")), EZorvekMCPBridgePinDirection::Output, Where))
				{
					return Entry ? false : Fail(Where, TEXT("has no entry node"));
				}
				const TArray<TSharedPtr<FJsonValue>>& Outputs = SimFixtureArray(Function, TEXT("outputs"));
				if (Outputs.Num() > 0)
				{
					FSimulatedNode* Result = Blueprints.FindOrCreateFunctionResultNode(*Graph);
					if (!Result || !AddUserPins(*Result, Outputs, EZorvekMCPBridgePinDirection::Input, Where))
					{
						return Result ? false : Fail(Where, TEXT("has no result node"));
					}
				}
				Blueprints.MarkStructurallyModified(Blueprint);
			}
			return true;
		}

		bool AddMacros(const TSharedPtr<FJsonObject>& Json)
		{
			for (const TSharedPtr<FJsonValue>& Value : SimFixtureArray(Json, TEXT("macros")))
			{
				const TSharedPtr<FJsonObject> Macro = Value->AsObject();
				const FString Name = SimFixtureString(Macro, TEXT("name"));
				const FString Where = FString::Printf(TEXT("macro %s"), *Name);
				if (Name.IsEmpty() || !Blueprints.IsGraphNameUnique(Blueprint, Name))
				{
					return Fail(Where, TEXT("needs a name no graph of the Blueprint has"));
				}
				std::vector<FSimulatedPinSpec> TunnelPins[2];
				const TCHAR* const Keys[2] = {TEXT("inputs"), TEXT("outputs")};
				for (int32 Side = 0; Side < 2; ++Side)
				{
					for (const TSharedPtr<FJsonValue>& PinValue : SimFixtureArray(Macro, Keys[Side]))
					{
						const TSharedPtr<FJsonObject> Pin = PinValue->AsObject();
						FSimulatedPinSpec TunnelPin;
						TunnelPin.Name = FName(*SimFixtureString(Pin, TEXT("name")));
						TunnelPin.DefaultValue = SimFixtureString(Pin, TEXT("default"));
						FString TypeError;
						if (!ParsePinType(SimFixtureString(Pin, TEXT("type")), TunnelPin.PinType, TypeError))
						{
							return Fail(FString::Printf(TEXT("%s pin %s"), *Where, *TunnelPin.Name.ToString()), TypeError);
						}
						TunnelPins[Side].push_back(TunnelPin);
					}
				}
				if (!Blueprints.AddMacroGraph(Blueprint, Name, TunnelPins[0], TunnelPins[1]))
				{
					return Fail(Where, TEXT("could not be created"));
				}
			}
			return true;
		}

		bool AddComponents(const TSharedPtr<FJsonObject>& Json)
		{
			for (const TSharedPtr<FJsonValue>& Value : SimFixtureArray(Json, TEXT("components")))
			{
				const TSharedPtr<FJsonObject> Component = Value->AsObject();
				const FString Name = SimFixtureString(Component, TEXT("name"));
				const FString Where = FString::Printf(TEXT("component %s"), *Name);
				const FString ClassPath = SimFixtureString(Component, TEXT("class"));
				FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
				if (!Class || !Blueprints.IsActorComponentClass(Class))
				{
					return Fail(Where, FString::Printf(TEXT("has class %s, which is no actor component class"), *ClassPath));
				}
				const FString ParentName = SimFixtureString(Component, TEXT("parent"));
				FSimulatedSCSNode* Parent = nullptr;
				if (!ParentName.IsEmpty())
				{
					Parent = Blueprint.ConstructionScript ? Blueprint.ConstructionScript->FindNode(ParentName) : nullptr;
					if (!Parent)
					{
						return Fail(Where, FString::Printf(TEXT("names the parent %s, which is not a component declared before it"), *ParentName));
					}
				}
				FSimulatedSCSNode* Node = Blueprints.CreateComponentNode(Blueprint, Class, Name);
				if (!Node)
				{
					return Fail(Where, TEXT("cannot be made (the Blueprint has no construction script)"));
				}
				if (Node->VariableName != Name)
				{
					Blueprints.RemoveComponentNode(Blueprint, *Node);
					return Fail(Where, FString::Printf(TEXT("is a name already taken (the editor would call it %s)"), *Node->VariableName));
				}
				const TSharedPtr<FJsonObject>* Values = nullptr;
				if (Component->TryGetObjectField(TEXT("values"), Values))
				{
					for (const TPair<FString, TSharedPtr<FJsonValue>>& Entry : (*Values)->Values)
					{
						FString Text;
						FString ValueError;
						if (!Entry.Value.IsValid() || !Entry.Value->TryGetString(Text) || !Editor.SetPropertyText(Node->ComponentTemplate, Entry.Key, Text, ValueError))
						{
							Blueprints.RemoveComponentNode(Blueprint, *Node);
							return Fail(FString::Printf(TEXT("%s value %s"), *Where, *Entry.Key), ValueError.IsEmpty() ? FString(TEXT("is not text, a number or a bool")) : ValueError);
						}
					}
				}
				if (Parent)
				{
					Blueprints.AddChildComponentNode(Blueprint, *Parent, *Node);
				}
				else
				{
					Blueprints.AddRootComponentNode(Blueprint, *Node);
				}
			}
			return true;
		}

		bool FillGraphs(const TSharedPtr<FJsonObject>& Json)
		{
			for (const TSharedPtr<FJsonValue>& Value : SimFixtureArray(Json, TEXT("graphs")))
			{
				const TSharedPtr<FJsonObject> GraphJson = Value->AsObject();
				const FString Name = SimFixtureString(GraphJson, TEXT("name"));
				FSimulatedGraph* Graph = Blueprint.FindGraph(Name);
				if (!Graph)
				{
					// A graph no other entry made is a further event graph.
					Graph = Blueprints.AddUbergraphPage(Blueprint, Blueprints.CreateNewGraph(Blueprint, Name));
					if (!Graph)
					{
						return Fail(FString::Printf(TEXT("graph %s"), *Name), TEXT("could not be created"));
					}
				}
				NodesById.Empty();
				const FString Where = FString::Printf(TEXT("graph %s"), *Name);
				for (const TSharedPtr<FJsonValue>& NodeValue : SimFixtureArray(GraphJson, TEXT("nodes")))
				{
					if (!AddNode(*Graph, NodeValue->AsObject(), Where))
					{
						return false;
					}
				}
				for (const TSharedPtr<FJsonValue>& LinkValue : SimFixtureArray(GraphJson, TEXT("links")))
				{
					if (!AddLink(LinkValue->AsString(), Where))
					{
						return false;
					}
				}
			}
			return true;
		}

		const FSimulatedFunction* FindCalledFunction(const FString& Reference) const
		{
			FString ClassPath;
			FString FunctionName;
			if (!Reference.Split(TEXT(":"), &ClassPath, &FunctionName, ESearchCase::CaseSensitive, ESearchDir::FromEnd))
			{
				return nullptr;
			}
			if (ClassPath == TEXT("self"))
			{
				for (const FSimulatedType* Class : {Blueprint.GeneratedClass, Blueprint.SkeletonClass})
				{
					if (const FSimulatedFunction* Function = Class ? Class->FindFunction(FunctionName) : nullptr)
					{
						return Function;
					}
				}
				return nullptr;
			}
			const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
			return Class ? Class->FindFunction(FunctionName) : nullptr;
		}

		// Placing an event from the action menu replaces its ghost node.
		void RemoveGhostEvent(const FSimulatedFunction& Function)
		{
			for (FSimulatedGraph* Graph : Blueprint.GetAllGraphs())
			{
				for (const std::unique_ptr<FSimulatedNode>& Node : Graph->Nodes)
				{
					if (Node->Kind == EZorvekMCPBridgeNodeKind::Event && Node->Function && Node->Function->Owner == Function.Owner && Node->Function->Name == Function.Name && Node->IsAutomaticallyPlacedGhostNode())
					{
						Blueprints.RemoveNode(*Graph, *Node);
						return;
					}
				}
			}
		}

		FSimulatedNode* MakeNode(FSimulatedGraph& Graph, const TSharedPtr<FJsonObject>& Json, const FString& Kind, FString& OutProblem)
		{
			const int32 X = SimFixtureInt(Json, TEXT("x"), 0);
			const int32 Y = SimFixtureInt(Json, TEXT("y"), 0);
			if (Kind == TEXT("function_entry") || Kind == TEXT("function_result"))
			{
				FSimulatedNode* Node = Kind == TEXT("function_entry") ? Graph.FindNodeOfClass(TEXT("K2Node_FunctionEntry")) : Blueprints.FindOrCreateFunctionResultNode(Graph);
				OutProblem = Node ? FString() : FString(TEXT("the graph has no such node"));
				return Node;
			}
			if (Kind == TEXT("event"))
			{
				const FString InterfacePath = SimFixtureString(Json, TEXT("interface"));
				const FSimulatedType* Owner = InterfacePath.IsEmpty() ? Blueprint.ParentClass : Editor.FindTypeByPath(InterfacePath);
				const FSimulatedFunction* Function = Owner ? Owner->FindFunction(SimFixtureString(Json, TEXT("function"))) : nullptr;
				if (!Function)
				{
					OutProblem = TEXT("names no event of the parent class or interface");
					return nullptr;
				}
				RemoveGhostEvent(*Function);
				return Blueprints.AddEventNode(Graph, *Function, X, Y);
			}
			if (Kind == TEXT("custom_event"))
			{
				FSimulatedNode* Node = Blueprints.AddCustomEventNode(Graph, SimFixtureString(Json, TEXT("name")), X, Y);
				if (Node && !AddUserPins(*Node, SimFixtureArray(Json, TEXT("parameters")), EZorvekMCPBridgePinDirection::Output, TEXT("custom event")))
				{
					OutProblem = Error;
					return nullptr;
				}
				return Node;
			}
			if (Kind == TEXT("call"))
			{
				const FSimulatedFunction* Function = FindCalledFunction(SimFixtureString(Json, TEXT("function")));
				OutProblem = Function ? FString() : FString(TEXT("names no function (Class path:Name or self:Name)"));
				return Function ? Blueprints.AddCallFunctionNode(Graph, *Function, X, Y) : nullptr;
			}
			if (Kind == TEXT("get") || Kind == TEXT("set"))
			{
				const FString Variable = SimFixtureString(Json, TEXT("variable"));
				FSimulatedNode* Node = Kind == TEXT("get") ? Blueprints.AddVariableGetNode(Graph, Variable, X, Y) : Blueprints.AddVariableSetNode(Graph, Variable, X, Y);
				OutProblem = Node ? FString() : FString::Printf(TEXT("names %s, which is no variable of the Blueprint"), *Variable);
				return Node;
			}
			if (Kind == TEXT("branch"))
			{
				return Blueprints.AddBranchNode(Graph, X, Y);
			}
			if (Kind == TEXT("sequence"))
			{
				return Blueprints.AddSequenceNode(Graph, X, Y, SimFixtureInt(Json, TEXT("outputs"), 2));
			}
			if (Kind == TEXT("cast"))
			{
				FSimulatedType* Target = Editor.FindTypeByPath(SimFixtureString(Json, TEXT("class")));
				OutProblem = Target && Target->Kind == ESimulatedTypeKind::Class ? FString() : FString(TEXT("names no class"));
				return OutProblem.IsEmpty() ? Blueprints.AddCastNode(Graph, Target, X, Y) : nullptr;
			}
			if (Kind == TEXT("macro"))
			{
				FString Library = SimFixtureString(Json, TEXT("library"));
				Library = Library.IsEmpty() ? FString(SimFixtureStandardMacrosPath) : Library;
				FSimulatedBlueprint* MacroLibrary = Blueprints.FindBlueprint(Editor.FindObject(Library));
				FSimulatedGraph* Macro = MacroLibrary ? MacroLibrary->FindGraph(SimFixtureString(Json, TEXT("macro"))) : nullptr;
				OutProblem = Macro && Macro->Kind == EZorvekMCPBridgeGraphKind::Macro ? FString() : FString(TEXT("names no macro graph of the library"));
				return OutProblem.IsEmpty() ? Blueprints.AddMacroInstanceNode(Graph, *Macro, X, Y) : nullptr;
			}
			if (Kind == TEXT("input_key") || Kind == TEXT("input_axis"))
			{
				const FString Key = SimFixtureString(Json, TEXT("key"));
				return Kind == TEXT("input_key") ? Blueprints.AddInputKeyNode(Graph, Key, X, Y) : Blueprints.AddInputAxisKeyNode(Graph, Key, X, Y);
			}
			if (Kind == TEXT("comment"))
			{
				return Blueprints.AddCommentNode(Graph, SimFixtureString(Json, TEXT("text")), X, Y, SimFixtureInt(Json, TEXT("width"), 400), SimFixtureInt(Json, TEXT("height"), 100));
			}
			OutProblem = FString::Printf(TEXT("has an unknown kind '%s'"), *Kind);
			return nullptr;
		}

		bool AddNode(FSimulatedGraph& Graph, const TSharedPtr<FJsonObject>& Json, const FString& GraphWhere)
		{
			const FString Id = SimFixtureString(Json, TEXT("id"));
			const FString Where = FString::Printf(TEXT("%s node %s"), *GraphWhere, *Id);
			if (Id.IsEmpty() || Id.Contains(TEXT(".")) || NodesById.Contains(Id))
			{
				return Fail(Where, TEXT("needs an id without dots, unique in its graph"));
			}
			FString Problem;
			FSimulatedNode* Node = MakeNode(Graph, Json, SimFixtureString(Json, TEXT("kind")), Problem);
			if (!Node)
			{
				return Fail(Where, Problem.IsEmpty() ? FString(TEXT("could not be created")) : Problem);
			}
			NodesById.Add(Id, Node);
			const FString NodeComment = SimFixtureString(Json, TEXT("node_comment"));
			if (!NodeComment.IsEmpty())
			{
				Node->NodeComment = NodeComment;
			}
			const TSharedPtr<FJsonObject>* Defaults = nullptr;
			if (Json->TryGetObjectField(TEXT("defaults"), Defaults))
			{
				for (const TPair<FString, TSharedPtr<FJsonValue>>& Entry : (*Defaults)->Values)
				{
					FSimulatedPin* Pin = Node->FindPin(Entry.Key, EZorvekMCPBridgePinDirection::Input);
					FString Text;
					if (!Pin || !Entry.Value.IsValid() || !Entry.Value->TryGetString(Text))
					{
						return Fail(Where, FString::Printf(TEXT("gives a default to %s, which is no input pin or not text"), *Entry.Key));
					}
					FSimulatedBlueprints::SetPinDefaultValue(*Pin, Text);
				}
			}
			return true;
		}

		FSimulatedPin* FindLinkPin(const FString& Reference, EZorvekMCPBridgePinDirection Direction) const
		{
			FString Id;
			FString PinName;
			if (!Reference.TrimStartAndEnd().Split(TEXT("."), &Id, &PinName))
			{
				return nullptr;
			}
			FSimulatedNode* const* Node = NodesById.Find(Id);
			return Node ? (*Node)->FindPin(PinName, Direction) : nullptr;
		}

		// "source.pin -> target.pin": an output to an input.
		bool AddLink(const FString& Link, const FString& GraphWhere)
		{
			FString Source;
			FString Target;
			FSimulatedPin* Output = Link.Split(TEXT("->"), &Source, &Target) ? FindLinkPin(Source, EZorvekMCPBridgePinDirection::Output) : nullptr;
			FSimulatedPin* Input = Output ? FindLinkPin(Target, EZorvekMCPBridgePinDirection::Input) : nullptr;
			if (!Input || !FSimulatedBlueprints::MakeLink(*Output, *Input))
			{
				return Fail(FString::Printf(TEXT("%s link '%s'"), *GraphWhere, *Link), TEXT("needs an output pin and an input pin of two nodes of the graph (id.pin -> id.pin)"));
			}
			return true;
		}

		FSimulatedBlueprints& Blueprints;
		FSimulatedEditor& Editor;
		FSimulatedBlueprint& Blueprint;
		FString& Error;
		TMap<FString, FSimulatedNode*> NodesById;
	};
}

FSimulatedObject* FSimulatedBlueprintFixtures::CreateBlueprint(FSimulatedObject* Package, const FString& AssetName, const TSharedPtr<FJsonObject>& Json, FString& OutError)
{
	EZorvekMCPBridgeBlueprintType Type = EZorvekMCPBridgeBlueprintType::Normal;
	const FString TypeWord = SimFixtureString(Json, TEXT("type"));
	if (!SimFixtureBlueprintType(TypeWord, Type))
	{
		OutError = FString::Printf(TEXT("has an unknown Blueprint type '%s'"), *TypeWord);
		return nullptr;
	}
	const FString ParentPath = SimFixtureString(Json, TEXT("parent"));
	FSimulatedType* Parent = nullptr;
	if (!ParentPath.IsEmpty())
	{
		Parent = Blueprints.GetEditor().FindTypeByPath(ParentPath);
		if (!Parent || Parent->Kind != ESimulatedTypeKind::Class)
		{
			OutError = FString::Printf(TEXT("has parent class %s, which is not defined"), *ParentPath);
			return nullptr;
		}
	}
	FSimulatedBlueprint* Blueprint = Blueprints.CreateBlueprint(Package, AssetName, Parent, Type, OutError);
	return Blueprint ? Blueprint->Object : nullptr;
}

bool FSimulatedBlueprintFixtures::BuildContents(FSimulatedObject* BlueprintObject, const TSharedPtr<FJsonObject>& Json, FString& OutError)
{
	FSimulatedBlueprint* Blueprint = Blueprints.FindBlueprint(BlueprintObject);
	if (!Blueprint)
	{
		OutError = TEXT("is not a Blueprint");
		return false;
	}
	FSimFixtureBuilder Builder(Blueprints, *Blueprint, OutError);
	if (!Builder.Build(Json))
	{
		return false;
	}
	Blueprints.Compile(*Blueprint);
	return true;
}
