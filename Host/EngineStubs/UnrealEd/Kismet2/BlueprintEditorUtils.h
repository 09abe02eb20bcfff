#pragma once

#include "CoreMinimal.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/Blueprint.h"
#include "Templates/SubclassOf.h"
#include "UObject/TopLevelAssetPath.h"
#include "UObject/UnrealType.h"
#include "UObject/WeakObjectPtrTemplates.h"

class UEdGraph;
class UEdGraphNode;
class UEdGraphSchema;
class UK2Node_EditablePinBase;
class UK2Node_Event;
class UK2Node_FunctionResult;
class USCS_Node;

class FBlueprintEditorUtils
{
public:
	static void MarkBlueprintAsStructurallyModified(UBlueprint* Blueprint);
	static void MarkBlueprintAsModified(UBlueprint* Blueprint, FPropertyChangedEvent PropertyChangedEvent = FPropertyChangedEvent(nullptr));

	static bool IsGraphNameUnique(UObject* InOuter, const FName& InName);
	static UEdGraph* CreateNewGraph(UObject* ParentScope, const FName& GraphName, TSubclassOf<UEdGraph> GraphClass, TSubclassOf<UEdGraphSchema> SchemaClass);
	template <typename SignatureType>
	static void AddFunctionGraph(UBlueprint* Blueprint, UEdGraph* Graph, bool bIsUserCreated, SignatureType* SignatureFromObject);
	static void AddUbergraphPage(UBlueprint* Blueprint, UEdGraph* Graph);
	static UK2Node_EditablePinBase* GetEntryNode(const UEdGraph* InGraph);
	static void GetEntryAndResultNodes(const UEdGraph* InGraph, TWeakObjectPtr<UK2Node_EditablePinBase>& OutEntryNode, TWeakObjectPtr<UK2Node_EditablePinBase>& OutResultNode);
	static UK2Node_FunctionResult* FindOrCreateFunctionResultNode(UK2Node_EditablePinBase* InFunctionEntryNode);

	static void RemoveNode(UBlueprint* Blueprint, UEdGraphNode* Node, bool bDontRecompile = false);
	static UK2Node_Event* FindOverrideForFunction(const UBlueprint* Blueprint, const UClass* SignatureClass, FName SignatureName);
	static UK2Node_Event* FindCustomEventNode(const UBlueprint* Blueprint, FName const CustomName);

	static bool AddMemberVariable(UBlueprint* Blueprint, const FName& NewVarName, const FEdGraphPinType& NewVarType, const FString& DefaultValue = FString());
	static int32 FindNewVariableIndex(const UBlueprint* Blueprint, const FName& InName);
	static void RemoveMemberVariable(UBlueprint* Blueprint, const FName VarName);
	static void SetBlueprintVariableCategory(UBlueprint* Blueprint, const FName& VarName, const UStruct* InLocalVarScope, const FText& NewCategory, bool bDontRecompile = false);
	static USCS_Node* FindSCS_Node(const UBlueprint* Blueprint, const FName InName);

	static bool ImplementNewInterface(UBlueprint* Blueprint, FTopLevelAssetPath InterfaceClassPathName);

	static bool IsInterfaceBlueprint(const UBlueprint* Blueprint);
};
