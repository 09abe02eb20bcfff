// The K2 schema of the simulated Blueprint editor: connection verdicts in the engine's order with
// its texts, type compatibility, the conversion nodes the engine offers instead of a refusal, and
// pin default validation.
#include "SimulatedBlueprint.h"

#include "SimulatedEditor.h"

#include <algorithm>

namespace
{
	const TCHAR* const SimSchemaWildcard = TEXT("wildcard");

	bool SimSchemaIs(const FName& Category, const TCHAR* Word)
	{
		return Category.ToString().Equals(Word, ESearchCase::IgnoreCase);
	}

	bool SimSchemaIsObjectLike(const FName& Category)
	{
		return SimSchemaIs(Category, TEXT("object")) || SimSchemaIs(Category, TEXT("interface")) || SimSchemaIs(Category, TEXT("class"))
			|| SimSchemaIs(Category, TEXT("softobject")) || SimSchemaIs(Category, TEXT("softclass"));
	}

	// A run of digits with an optional sign, blanks around it allowed (FDefaultValueHelper::ParseInt).
	bool SimSchemaParseInt(const FString& Text, int64& OutValue)
	{
		const FString Trimmed = Text.TrimStartAndEnd();
		int32 Index = 0;
		bool bNegative = false;
		if (Index < Trimmed.Len() && (Trimmed[Index] == TEXT('-') || Trimmed[Index] == TEXT('+')))
		{
			bNegative = Trimmed[Index] == TEXT('-');
			++Index;
		}
		if (Index >= Trimmed.Len())
		{
			return false;
		}
		int64 Value = 0;
		for (; Index < Trimmed.Len(); ++Index)
		{
			if (!FChar::IsDigit(Trimmed[Index]))
			{
				return false;
			}
			Value = Value * 10 + (Trimmed[Index] - TEXT('0'));
		}
		OutValue = bNegative ? -Value : Value;
		return true;
	}

	// FDefaultValueHelper::IsStringValidFloat: sign, digits, one point, an exponent, an "f".
	bool SimSchemaIsValidFloat(const FString& Text)
	{
		const FString Trimmed = Text.TrimStartAndEnd();
		int32 Index = 0;
		if (Index < Trimmed.Len() && (Trimmed[Index] == TEXT('-') || Trimmed[Index] == TEXT('+')))
		{
			++Index;
		}
		bool bDigits = false;
		bool bPoint = false;
		for (; Index < Trimmed.Len(); ++Index)
		{
			const TCHAR Character = Trimmed[Index];
			if (FChar::IsDigit(Character))
			{
				bDigits = true;
			}
			else if (Character == TEXT('.') && !bPoint)
			{
				bPoint = true;
			}
			else
			{
				break;
			}
		}
		if (!bDigits)
		{
			return false;
		}
		if (Index < Trimmed.Len() && (Trimmed[Index] == TEXT('e') || Trimmed[Index] == TEXT('E')))
		{
			++Index;
			if (Index < Trimmed.Len() && (Trimmed[Index] == TEXT('-') || Trimmed[Index] == TEXT('+')))
			{
				++Index;
			}
			bool bExponentDigits = false;
			while (Index < Trimmed.Len() && FChar::IsDigit(Trimmed[Index]))
			{
				bExponentDigits = true;
				++Index;
			}
			if (!bExponentDigits)
			{
				return false;
			}
		}
		if (Index < Trimmed.Len() && (Trimmed[Index] == TEXT('f') || Trimmed[Index] == TEXT('F')))
		{
			++Index;
		}
		return Index == Trimmed.Len();
	}

	// "X, Y, Z": the number of comma-separated floats a vector or rotator default holds.
	bool SimSchemaIsFloatList(const FString& Text, int32 Count)
	{
		TArray<FString> Parts;
		Text.ParseIntoArray(Parts, TEXT(","), false);
		if (Parts.Num() != Count)
		{
			return false;
		}
		for (const FString& Part : Parts)
		{
			if (!SimSchemaIsValidFloat(Part))
			{
				return false;
			}
		}
		return true;
	}

	// "(R=..,G=..,B=..,A=..)" as FLinearColor::InitFromString reads it: R, G and B required.
	bool SimSchemaIsLinearColor(const FString& Text)
	{
		FString Inner = Text.TrimStartAndEnd();
		if (!Inner.StartsWith(TEXT("(")) || !Inner.EndsWith(TEXT(")")))
		{
			return false;
		}
		Inner = Inner.Mid(1, Inner.Len() - 2);
		TArray<FString> Parts;
		Inner.ParseIntoArray(Parts, TEXT(","), true);
		int32 Found = 0;
		for (const FString& Part : Parts)
		{
			FString Key;
			FString Value;
			if (!Part.Split(TEXT("="), &Key, &Value) || !SimSchemaIsValidFloat(Value))
			{
				return false;
			}
			Key = Key.TrimStartAndEnd();
			if (Key == TEXT("R") || Key == TEXT("G") || Key == TEXT("B"))
			{
				++Found;
			}
			else if (Key != TEXT("A"))
			{
				return false;
			}
		}
		return Found == 3;
	}
}

const TCHAR* FSimulatedCompilerResultsLog::GetSeverityText(ESimulatedMessageSeverity Severity)
{
	switch (Severity)
	{
	case ESimulatedMessageSeverity::Error:
		return TEXT("Error");
	case ESimulatedMessageSeverity::PerformanceWarning:
		return TEXT("Performance Warning");
	case ESimulatedMessageSeverity::Warning:
		return TEXT("Warning");
	default:
		return TEXT("Info");
	}
}

const FSimulatedType* FSimulatedBlueprints::GetCallingContext(const FSimulatedGraph& Graph) const
{
	const FSimulatedBlueprint* Blueprint = Graph.Blueprint;
	if (!Blueprint)
	{
		return nullptr;
	}
	return Blueprint->GeneratedClass ? Blueprint->GeneratedClass : Blueprint->ParentClass;
}

FString FSimulatedBlueprints::GetPinDisplayName(const FSimulatedPin& Pin)
{
	if (Pin.PinName == FName(TEXT("self")))
	{
		return TEXT("Target");
	}
	if (!Pin.FriendlyName.IsEmpty())
	{
		return Pin.FriendlyName;
	}
	if (Pin.PinName.IsNone())
	{
		return TEXT("<Unnamed>");
	}
	return NameToDisplayString(Pin.PinName.ToString(), Pin.PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Boolean);
}

FString FSimulatedBlueprints::GetNodeListTitle(const FSimulatedNode& Node) const
{
	switch (Node.Kind)
	{
	case EZorvekMCPBridgeNodeKind::Comment:
		return TEXT("Comment");
	case EZorvekMCPBridgeNodeKind::CustomEvent:
		return Node.Data.CustomFunctionName;
	case EZorvekMCPBridgeNodeKind::FunctionCall:
	{
		// The list view does not make names friendly; only DisplayName metadata counts. A call
		// whose function is gone is titled from its member name.
		if (Node.Function)
		{
			const FString* DisplayName = Node.Function->FindMetaData(TEXT("DisplayName"));
			return DisplayName ? *DisplayName : Node.Function->Name;
		}
		return NameToDisplayString(Node.Data.MemberName, false);
	}
	default:
		break;
	}
	FString Title = GetNodeTitle(Node);
	int32 LineBreak = INDEX_NONE;
	if (Title.FindChar(TEXT('\n'), LineBreak))
	{
		Title.LeftInline(LineBreak);
	}
	return Title;
}

FString FSimulatedBlueprints::TypeToText(const FZorvekMCPBridgePinType& PinType) const
{
	auto ClassText = [this](const FZorvekMCPBridgeTypeIdentity& Identity)
	{
		const FSimulatedType* Class = Editor.FindTypeByPath(Identity.PathName);
		FString Name = Class ? Class->Name : Identity.Name;
		if (const FSimulatedBlueprint* Blueprint = Class ? FindBlueprintByClass(Class) : nullptr)
		{
			Name = Blueprint->GetName();
		}
		return NameToDisplayString(Name, false);
	};
	auto TerminalText = [this, &ClassText](const FName& Category, const FName& SubCategory, const FZorvekMCPBridgeTypeIdentity& Object)
	{
		if (SimSchemaIs(Category, TEXT("exec")))
		{
			return FString(TEXT("Exec"));
		}
		if (SimSchemaIs(Category, TEXT("bool")))
		{
			return FString(TEXT("Boolean"));
		}
		if (SimSchemaIs(Category, TEXT("byte")))
		{
			return Object.IsSet() ? Object.Name + TEXT(" Enum") : FString(TEXT("Byte"));
		}
		if (SimSchemaIs(Category, TEXT("int")))
		{
			return FString(TEXT("Integer"));
		}
		if (SimSchemaIs(Category, TEXT("int64")))
		{
			return FString(TEXT("Integer64"));
		}
		if (SimSchemaIs(Category, TEXT("real")) || SimSchemaIs(Category, TEXT("float")) || SimSchemaIs(Category, TEXT("double")))
		{
			return FString(TEXT("Float"));
		}
		if (SimSchemaIs(Category, TEXT("name")))
		{
			return FString(TEXT("Name"));
		}
		if (SimSchemaIs(Category, TEXT("string")))
		{
			return FString(TEXT("String"));
		}
		if (SimSchemaIs(Category, TEXT("text")))
		{
			return FString(TEXT("Text"));
		}
		if (SimSchemaIs(Category, SimSchemaWildcard))
		{
			return FString(TEXT("Wildcard"));
		}
		if (SimSchemaIs(Category, TEXT("struct")))
		{
			return NameToDisplayString(Object.Name, false);
		}
		if (SimSchemaIs(Category, TEXT("object")))
		{
			const bool bSelf = SubCategory == FName(TEXT("self"));
			if (!bSelf && (!Object.IsSet() || Object.PathName == TEXT("/Script/CoreUObject.Object")))
			{
				return FString(TEXT("Object Reference"));
			}
			return (bSelf && !Object.IsSet() ? FString(TEXT("Self")) : ClassText(Object)) + TEXT(" Object Reference");
		}
		if (SimSchemaIs(Category, TEXT("class")))
		{
			return ClassText(Object) + TEXT(" Class Reference");
		}
		if (SimSchemaIs(Category, TEXT("interface")))
		{
			return ClassText(Object) + TEXT(" Interface");
		}
		if (SimSchemaIs(Category, TEXT("softobject")))
		{
			return FString(TEXT("Soft Object Reference"));
		}
		if (SimSchemaIs(Category, TEXT("softclass")))
		{
			return FString(TEXT("Soft Class Reference"));
		}
		if (SimSchemaIs(Category, TEXT("delegate")))
		{
			return FString(TEXT("Delegate"));
		}
		if (SimSchemaIs(Category, TEXT("mcdelegate")))
		{
			return FString(TEXT("Multicast Delegate"));
		}
		return Category.ToString();
	};
	const FString Element = TerminalText(PinType.PinCategory, PinType.PinSubCategory, PinType.PinSubCategoryObject);
	FString Text;
	switch (PinType.ContainerType)
	{
	case EZorvekMCPBridgePinContainerType::Array:
		Text = FString::Printf(TEXT("Array of %ss"), *Element);
		break;
	case EZorvekMCPBridgePinContainerType::Set:
		Text = FString::Printf(TEXT("Set of %ss"), *Element);
		break;
	case EZorvekMCPBridgePinContainerType::Map:
		Text = FString::Printf(TEXT("Map of %ss to %ss"), *Element,
			*TerminalText(PinType.PinValueType.TerminalCategory, PinType.PinValueType.TerminalSubCategory, PinType.PinValueType.TerminalSubCategoryObject));
		break;
	default:
		Text = Element;
		break;
	}
	if (PinType.bIsReference)
	{
		Text += TEXT(" (by ref)");
	}
	return Text;
}

bool FSimulatedBlueprints::ArePinTypesCompatible(const FZorvekMCPBridgePinType& Output, const FZorvekMCPBridgePinType& Input, const FSimulatedType* CallingContext, bool bIgnoreArray) const
{
	const bool bOutputWildcard = SimSchemaIs(Output.PinCategory, SimSchemaWildcard);
	const bool bInputWildcard = SimSchemaIs(Input.PinCategory, SimSchemaWildcard);
	if (Output.ContainerType != Input.ContainerType)
	{
		const bool bLooseWildcard = (bOutputWildcard && !Output.IsContainer()) || (bInputWildcard && !Input.IsContainer());
		if (!bLooseWildcard && !bIgnoreArray)
		{
			return false;
		}
	}
	if (bOutputWildcard || bInputWildcard)
	{
		return true;
	}
	// A class as the editor compares it: a skeleton class stands for its generated class, "self"
	// for the calling context.
	auto ResolveClass = [this, CallingContext](const FZorvekMCPBridgePinType& Type) -> const FSimulatedType*
	{
		const FSimulatedType* Class = Type.PinSubCategory == FName(TEXT("self")) ? CallingContext : nullptr;
		if (!Class)
		{
			Class = Type.PinSubCategoryObject.IsSet() ? Editor.FindTypeByPath(Type.PinSubCategoryObject.PathName) : Editor.GetObjectClass();
		}
		if (const FSimulatedBlueprint* Blueprint = Class ? FindBlueprintByClass(Class) : nullptr)
		{
			Class = Blueprint->GeneratedClass ? Blueprint->GeneratedClass : Class;
		}
		return Class;
	};
	auto ImplementsInterface = [this](const FSimulatedType* Class, const FSimulatedType* Interface)
	{
		for (const FSimulatedType* Current = Class; Current && Interface; Current = Current->Super)
		{
			if (Current->IsChildOf(Interface))
			{
				return true;
			}
			if (const FSimulatedBlueprint* Blueprint = FindBlueprintByClass(Current))
			{
				for (const FSimulatedImplementedInterface& Implemented : Blueprint->ImplementedInterfaces)
				{
					if (Implemented.Interface && Implemented.Interface->IsChildOf(Interface))
					{
						return true;
					}
				}
			}
		}
		return false;
	};
	if (Output.IsMap())
	{
		const FName& OutputValue = Output.PinValueType.TerminalCategory;
		const FName& InputValue = Input.PinValueType.TerminalCategory;
		const bool bBothReal = SimSchemaIs(OutputValue, TEXT("real")) && SimSchemaIs(InputValue, TEXT("real"));
		if (!(OutputValue == InputValue && (bBothReal || Output.PinValueType.TerminalSubCategoryObject.PathName == Input.PinValueType.TerminalSubCategoryObject.PathName)))
		{
			return false;
		}
	}

	if (Output.PinCategory == Input.PinCategory)
	{
		if (SimSchemaIs(Output.PinCategory, TEXT("real")) || SimSchemaIs(Output.PinCategory, TEXT("exec")))
		{
			return true;
		}
		if (SimSchemaIsObjectLike(Output.PinCategory))
		{
			const FSimulatedType* OutputClass = ResolveClass(Output);
			const FSimulatedType* InputClass = ResolveClass(Input);
			if (!OutputClass || !InputClass)
			{
				return false;
			}
			if (SimSchemaIs(Output.PinCategory, TEXT("interface")))
			{
				return OutputClass->IsChildOf(InputClass) || ImplementsInterface(OutputClass, InputClass);
			}
			return OutputClass->IsChildOf(InputClass);
		}
		if (SimSchemaIs(Output.PinCategory, TEXT("byte")))
		{
			// An enum's byte goes into a plain byte; two enums must be the same.
			return !Input.PinSubCategoryObject.IsSet() || Output.PinSubCategoryObject.PathName == Input.PinSubCategoryObject.PathName;
		}
		return Output.PinSubCategory == Input.PinSubCategory && Output.PinSubCategoryObject.PathName == Input.PinSubCategoryObject.PathName;
	}
	// Different categories: an object whose class implements the interface.
	if (SimSchemaIs(Output.PinCategory, TEXT("object")) && SimSchemaIs(Input.PinCategory, TEXT("interface")))
	{
		return ImplementsInterface(ResolveClass(Output), ResolveClass(Input));
	}
	return false;
}

const FSimulatedFunction* FSimulatedBlueprints::FindAutocastFunction(const FZorvekMCPBridgePinType& Output, const FZorvekMCPBridgePinType& Input) const
{
	// The autocast table holds single values only (the engine's Set -> Array entry needs a
	// function the library does not have).
	if (Output.IsContainer() || Input.IsContainer())
	{
		return nullptr;
	}
	const FSimulatedType* Library = Editor.FindTypeByPath(TEXT("/Script/Engine.BlueprintFunctionLibrary"));
	const FSimulatedFunction* Found = nullptr;
	Editor.ForEachObject([this, &Output, &Input, Library, &Found](FSimulatedObject* Object)
	{
		const FSimulatedType* Class = Found ? nullptr : dynamic_cast<FSimulatedType*>(Object);
		if (!Class || Class->Kind != ESimulatedTypeKind::Class || !Library || !Class->IsChildOf(Library))
		{
			return;
		}
		for (const std::shared_ptr<FSimulatedFunction>& Function : Class->Functions)
		{
			const uint32 Required = SimulatedFunctionFlags::Static | SimulatedFunctionFlags::BlueprintPure;
			if ((Function->FunctionFlags & Required) != Required || !Function->FindMetaData(TEXT("BlueprintAutocast")))
			{
				continue;
			}
			const FSimulatedProperty* FirstInput = nullptr;
			const FSimulatedProperty* ReturnValue = nullptr;
			for (const std::shared_ptr<FSimulatedProperty>& Parameter : Function->Parameters)
			{
				if ((Parameter->Flags & SimulatedParameterFlags::ReturnParm) != 0)
				{
					ReturnValue = Parameter.get();
				}
				else if (!FirstInput)
				{
					FirstInput = Parameter.get();
				}
			}
			FZorvekMCPBridgePinType FromType;
			FZorvekMCPBridgePinType ToType;
			if (!FirstInput || !ReturnValue || !GetPinTypeFromProperty(*FirstInput, FromType) || !GetPinTypeFromProperty(*ReturnValue, ToType))
			{
				continue;
			}
			// The table is keyed by exact types; a float key is tried again as double, which in
			// the comparison below is the same real category.
			const bool bFromMatches = FromType.PinCategory == Output.PinCategory
				&& (SimSchemaIs(FromType.PinCategory, TEXT("real")) || ArePinTypesCompatible(Output, FromType, nullptr));
			const bool bToMatches = ToType.PinCategory == Input.PinCategory && ArePinTypesCompatible(ToType, Input, nullptr);
			if (bFromMatches && bToMatches)
			{
				Found = Function.get();
				return;
			}
		}
	});
	return Found;
}

FSimulatedConnectionResponse FSimulatedBlueprints::CanCreateConnection(const FSimulatedPin& A, const FSimulatedPin& B) const
{
	auto Disallow = [](const FString& Message)
	{
		FSimulatedConnectionResponse Response;
		Response.Response = ESimulatedConnectResponse::Disallow;
		Response.Message = Message;
		return Response;
	};
	const FSimulatedNode* NodeA = A.OwningNode;
	const FSimulatedNode* NodeB = B.OwningNode;
	if (!NodeA || !NodeB || !NodeA->Graph || !NodeB->Graph || NodeA->Kind == EZorvekMCPBridgeNodeKind::Comment || NodeB->Kind == EZorvekMCPBridgeNodeKind::Comment)
	{
		return Disallow(TEXT("Invalid nodes"));
	}
	if (NodeA == NodeB)
	{
		return Disallow(TEXT("Both are on the same node"));
	}
	if (A.bOrphanedPin || B.bOrphanedPin)
	{
		return Disallow(TEXT("Cannot make new connections to orphaned pin"));
	}
	// The cast's own veto on its source pin (IsConnectionDisallowed), A's node first.
	for (const FSimulatedPin* Pin : {&A, &B})
	{
		const FSimulatedPin& Other = Pin == &A ? B : A;
		const FSimulatedNode* Node = Pin->OwningNode;
		if (Node->Kind != EZorvekMCPBridgeNodeKind::DynamicCast || Pin->PinName != FName(TEXT("Object")) || Pin->Direction != EZorvekMCPBridgePinDirection::Input)
		{
			continue;
		}
		if (Other.PinType.IsContainer())
		{
			return Disallow(TEXT("You cannot cast containers of objects."));
		}
		if (!Node->TargetClass)
		{
			return Disallow(TEXT("This cast has an invalid target type (was the class deleted without a redirect?)."));
		}
		if (!SimSchemaIs(Other.PinType.PinCategory, TEXT("object")) && !SimSchemaIs(Other.PinType.PinCategory, TEXT("interface")))
		{
			return Disallow(TEXT("You can only cast objects/interfaces."));
		}
	}
	if (A.Direction == B.Direction)
	{
		return Disallow(TEXT("Directions are not compatible"));
	}
	const bool bAIsOutput = A.Direction == EZorvekMCPBridgePinDirection::Output;
	const FSimulatedPin& Output = bAIsOutput ? A : B;
	const FSimulatedPin& Input = bAIsOutput ? B : A;
	const FSimulatedType* CallingContext = GetCallingContext(*NodeA->Graph);

	if (ArePinTypesCompatible(Output.PinType, Input.PinType, CallingContext))
	{
		FSimulatedConnectionResponse Response;
		if (Output.IsExec() && !Output.LinkedTo.empty())
		{
			Response.Response = bAIsOutput ? ESimulatedConnectResponse::BreakOthersA : ESimulatedConnectResponse::BreakOthersB;
			Response.Message = TEXT("Replace existing output connections");
		}
		else if (!Input.IsExec() && !Input.LinkedTo.empty())
		{
			Response.Response = bAIsOutput ? ESimulatedConnectResponse::BreakOthersB : ESimulatedConnectResponse::BreakOthersA;
			Response.Message = TEXT("Replace existing input connections");
		}
		return Response;
	}
	// Promotable operators are not modelled: the library's operators are plain calls.
	if (!Output.IsExec() && !Input.IsExec() && FindAutocastFunction(Output.PinType, Input.PinType))
	{
		FSimulatedConnectionResponse Response;
		Response.Response = ESimulatedConnectResponse::MakeWithConversionNode;
		Response.Message = FString::Printf(TEXT("Convert %s to %s"), *TypeToText(Output.PinType), *TypeToText(Input.PinType));
		return Response;
	}
	// GetPinIncompatibilityReason names the pins in the order they were passed.
	return Disallow(FString::Printf(TEXT("%s is not compatible with %s."), *TypeToText(A.PinType), *TypeToText(B.PinType)));
}

void FSimulatedBlueprints::PinConnectionListChanged(FSimulatedPin& Pin)
{
	FSimulatedNode* Node = Pin.OwningNode;
	// A cast's source pin takes the type of what feeds it and is a wildcard again when unlinked.
	if (Node && Node->Kind == EZorvekMCPBridgeNodeKind::DynamicCast && Pin.PinName == FName(TEXT("Object")) && Pin.Direction == EZorvekMCPBridgePinDirection::Input)
	{
		FZorvekMCPBridgePinType Wildcard;
		Wildcard.PinCategory = FName(SimSchemaWildcard);
		if (const FSimulatedType* Object = Editor.GetObjectClass())
		{
			Wildcard.PinSubCategoryObject = FZorvekMCPBridgeTypeIdentity(Object->GetPathName(), Object->Name);
		}
		Pin.PinType = Wildcard;
		if (!Pin.LinkedTo.empty())
		{
			const FZorvekMCPBridgePinType& Source = Pin.LinkedTo.front()->PinType;
			Pin.PinType.PinCategory = Source.PinCategory;
			Pin.PinType.PinSubCategory = Source.PinSubCategory;
			Pin.PinType.PinSubCategoryObject = Source.PinSubCategoryObject;
		}
	}
}

FSimulatedNode* FSimulatedBlueprints::SpawnConversionNode(FSimulatedPin& OutputPin, FSimulatedPin& InputPin, const FSimulatedFunction& Function)
{
	FSimulatedNode* OutputNode = OutputPin.OwningNode;
	FSimulatedNode* InputNode = InputPin.OwningNode;
	// CalculateAveragePositionBetweenNodes.
	const int32 PosX = (OutputNode->PosX + InputNode->PosX) / 2;
	const int32 PosY = (OutputNode->PosY + InputNode->PosY) / 2;
	FSimulatedNode* Conversion = AddCallFunctionNode(*InputNode->Graph, Function, PosX, PosY);
	// AutowireConversionNode: the first compatible input from the output, the result into the input.
	FSimulatedPin* ConversionInput = nullptr;
	FSimulatedPin* ConversionOutput = nullptr;
	for (const std::unique_ptr<FSimulatedPin>& Pin : Conversion->Pins)
	{
		if (Pin->bHidden || Pin->IsExec())
		{
			continue;
		}
		if (!ConversionInput && Pin->Direction == EZorvekMCPBridgePinDirection::Input && CanCreateConnection(OutputPin, *Pin).CanSafeConnect())
		{
			ConversionInput = Pin.get();
		}
		else if (!ConversionOutput && Pin->Direction == EZorvekMCPBridgePinDirection::Output && CanCreateConnection(*Pin, InputPin).Response != ESimulatedConnectResponse::Disallow
			&& CanCreateConnection(*Pin, InputPin).Response != ESimulatedConnectResponse::MakeWithConversionNode)
		{
			ConversionOutput = Pin.get();
		}
	}
	if (!ConversionInput || !ConversionOutput)
	{
		RemoveNode(*InputNode->Graph, *Conversion);
		return nullptr;
	}
	TryCreateConnection(OutputPin, *ConversionInput);
	TryCreateConnection(*ConversionOutput, InputPin);
	return Conversion;
}

bool FSimulatedBlueprints::TryCreateConnection(FSimulatedPin& A, FSimulatedPin& B, FSimulatedNode** OutConversionNode)
{
	if (OutConversionNode)
	{
		*OutConversionNode = nullptr;
	}
	const FSimulatedConnectionResponse Response = CanCreateConnection(A, B);
	auto BreakAll = [](FSimulatedPin& Pin)
	{
		while (!Pin.LinkedTo.empty())
		{
			FSimulatedPin* Other = Pin.LinkedTo.back();
			BreakLink(Pin, *Other);
		}
	};
	bool bModified = false;
	switch (Response.Response)
	{
	case ESimulatedConnectResponse::Make:
		bModified = MakeLink(A, B);
		break;
	case ESimulatedConnectResponse::BreakOthersA:
		BreakAll(A);
		bModified = MakeLink(A, B);
		break;
	case ESimulatedConnectResponse::BreakOthersB:
		BreakAll(B);
		bModified = MakeLink(A, B);
		break;
	case ESimulatedConnectResponse::BreakOthersAB:
		BreakAll(A);
		BreakAll(B);
		bModified = MakeLink(A, B);
		break;
	case ESimulatedConnectResponse::MakeWithConversionNode:
	{
		FSimulatedPin& OutputPin = A.Direction == EZorvekMCPBridgePinDirection::Output ? A : B;
		FSimulatedPin& InputPin = A.Direction == EZorvekMCPBridgePinDirection::Output ? B : A;
		const FSimulatedFunction* Function = FindAutocastFunction(OutputPin.PinType, InputPin.PinType);
		FSimulatedNode* Conversion = Function ? SpawnConversionNode(OutputPin, InputPin, *Function) : nullptr;
		if (OutConversionNode)
		{
			*OutConversionNode = Conversion;
		}
		bModified = Conversion != nullptr;
		break;
	}
	default:
		break;
	}
	if (bModified)
	{
		PinConnectionListChanged(A);
		PinConnectionListChanged(B);
		if (FSimulatedBlueprint* Blueprint = A.OwningNode->Graph->Blueprint)
		{
			MarkModified(*Blueprint);
		}
	}
	return bModified;
}

FString FSimulatedBlueprints::IsPinDefaultValid(const FSimulatedPin& Pin, const FString& Value) const
{
	const FZorvekMCPBridgePinType& Type = Pin.PinType;
	const FString PinText = GetPinDisplayName(Pin);
	// Containers and by-reference inputs take their value from a wire only. Not in the reference
	// notes (the notes name the rule, not its texts); check against the engine.
	if (Pin.Direction == EZorvekMCPBridgePinDirection::Input)
	{
		if (Type.IsArray())
		{
			return FString::Printf(TEXT("Array inputs (like '%s') must have an input wired into them (try connecting a MakeArray node)."), *PinText);
		}
		if (Type.IsSet())
		{
			return FString::Printf(TEXT("Set inputs (like '%s') must have an input wired into them (try connecting a MakeSet node)."), *PinText);
		}
		if (Type.IsMap())
		{
			return FString::Printf(TEXT("Map inputs (like '%s') must have an input wired into them (try connecting a MakeMap node)."), *PinText);
		}
		// A const reference is read only: a literal is fine (Print String's In String).
		if (Type.bIsReference && !Type.bIsConst)
		{
			return FString::Printf(TEXT("'%s' in action '%s' must have an input wired into it (\"by ref\" params expect a valid input to operate on)."), *PinText,
				Pin.OwningNode ? *GetNodeListTitle(*Pin.OwningNode) : TEXT(""));
		}
	}
	const FName& Category = Type.PinCategory;
	int64 Number = 0;
	if (SimSchemaIs(Category, TEXT("byte")))
	{
		if (const FSimulatedType* Enum = Type.PinSubCategoryObject.IsSet() ? Editor.FindTypeByPath(Type.PinSubCategoryObject.PathName) : nullptr)
		{
			for (const FString& Name : Enum->EnumNames)
			{
				FString ShortName = Name;
				int32 Separator = INDEX_NONE;
				if (ShortName.FindLastChar(TEXT(':'), Separator))
				{
					ShortName.RightChopInline(Separator + 1);
				}
				if (Name.Equals(Value, ESearchCase::IgnoreCase) || ShortName.Equals(Value, ESearchCase::IgnoreCase))
				{
					return FString();
				}
			}
			return FString::Printf(TEXT("'%s' is not a valid enumerant of '<%s>'"), *Value, *Enum->Name);
		}
		if (!SimSchemaParseInt(Value, Number))
		{
			return TEXT("Expected a valid unsigned number for a byte property");
		}
		if (Number < 0 || Number > 255)
		{
			return TEXT("Expected a value between 0 and 255 for a byte property");
		}
	}
	else if (SimSchemaIs(Category, TEXT("int")))
	{
		if (!SimSchemaParseInt(Value, Number))
		{
			return TEXT("Expected a valid number for an integer property");
		}
	}
	else if (SimSchemaIs(Category, TEXT("int64")))
	{
		if (!SimSchemaParseInt(Value, Number))
		{
			return TEXT("Expected a valid number for an integer64 property");
		}
	}
	else if (SimSchemaIs(Category, TEXT("real")))
	{
		if (!SimSchemaIsValidFloat(Value))
		{
			return TEXT("Expected a valid number for a real property");
		}
	}
	else if (SimSchemaIs(Category, TEXT("struct")))
	{
		const FString& Struct = Type.PinSubCategoryObject.Name;
		if ((Struct == TEXT("Vector") && !SimSchemaIsFloatList(Value, 3)))
		{
			return TEXT("Invalid value for an FVector");
		}
		if (Struct == TEXT("Rotator") && !SimSchemaIsFloatList(Value, 3))
		{
			return TEXT("Invalid value for an FRotator");
		}
		if (Struct == TEXT("LinearColor") && !SimSchemaIsLinearColor(Value))
		{
			return TEXT("Invalid value for an FLinearColor");
		}
	}
	else if (SimSchemaIs(Category, TEXT("object")) || SimSchemaIs(Category, TEXT("class")) || SimSchemaIs(Category, TEXT("interface")))
	{
		if (Value.IsEmpty() || Value == TEXT("None"))
		{
			return FString();
		}
		if (Type.PinSubCategory == FName(TEXT("self")))
		{
			return TEXT("Cannot override a 'self' pin with an object");
		}
		const FSimulatedObject* Object = Editor.FindObject(Value);
		if (!Object)
		{
			return FString::Printf(TEXT("Unable to find the object '%s' (specified on pin %s)"), *Value, *PinText);
		}
		const FSimulatedType* Required = Type.PinSubCategoryObject.IsSet() ? Editor.FindTypeByPath(Type.PinSubCategoryObject.PathName) : nullptr;
		const bool bClassPin = SimSchemaIs(Category, TEXT("class"));
		const FSimulatedType* AsType = dynamic_cast<const FSimulatedType*>(Object);
		const bool bFits = !Required || (bClassPin ? (AsType && AsType->IsChildOf(Required)) : (Object->Class && Object->Class->IsChildOf(Required)));
		if (!bFits)
		{
			return FString::Printf(TEXT("%s isn't a %s (specified on pin %s)"), *Object->GetPathName(), Required ? *Required->Name : TEXT("Object"), *PinText);
		}
	}
	return FString();
}

bool FSimulatedBlueprints::TrySetDefaultValue(FSimulatedPin& Pin, const FString& Value)
{
	if (!IsPinDefaultValid(Pin, Value).IsEmpty())
	{
		return false;
	}
	const FName& Category = Pin.PinType.PinCategory;
	if (SimSchemaIs(Category, TEXT("object")) || SimSchemaIs(Category, TEXT("class")) || SimSchemaIs(Category, TEXT("interface")))
	{
		// GetPinDefaultValuesFromString: an object path becomes the default object.
		Pin.DefaultObject = (Value.IsEmpty() || Value == TEXT("None")) ? nullptr : Editor.FindObject(Value);
		Pin.DefaultValue.Reset();
	}
	else if (SimSchemaIs(Category, TEXT("text")))
	{
		Pin.DefaultTextValue = Value;
		Pin.DefaultValue.Reset();
	}
	else
	{
		Pin.DefaultValue = Value;
	}
	Pin.PinType.bSerializeAsSinglePrecisionFloat = false;
	if (Pin.OwningNode && Pin.OwningNode->Graph && Pin.OwningNode->Graph->Blueprint)
	{
		MarkModified(*Pin.OwningNode->Graph->Blueprint);
	}
	return true;
}
