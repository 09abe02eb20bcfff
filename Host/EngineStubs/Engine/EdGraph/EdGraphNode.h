#pragma once

#include "CoreMinimal.h"
#include "Containers/EnumAsByte.h"
#include "Misc/Guid.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"
#include "UObject/WeakObjectPtrTemplates.h"

struct FEdGraphPinType;
class UEdGraph;
class UEdGraphPin;
class UEdGraphSchema;

UENUM()
enum EEdGraphPinDirection : int
{
	EGPD_Input,
	EGPD_Output,
	EGPD_MAX,
};

USTRUCT()
struct FEdGraphTerminalType
{
	GENERATED_USTRUCT_BODY()

	FEdGraphTerminalType();

	FName TerminalCategory;
	FName TerminalSubCategory;
	TWeakObjectPtr<UObject> TerminalSubCategoryObject;
	bool bTerminalIsConst;
	bool bTerminalIsWeakPointer;
	bool bTerminalIsUObjectWrapper;

	static FEdGraphTerminalType FromPinType(const FEdGraphPinType& PinType);
};

namespace ENodeTitleType
{
	enum Type : int
	{
		FullTitle,
		ListView,
		EditableTitle,
		MenuTitle,
		MAX_TitleTypes
	};
}

enum class ENodeEnabledState : uint8
{
	Enabled,
	Disabled,
	DevelopmentOnly
};

UCLASS()
class UEdGraphNode : public UObject
{
	GENERATED_BODY()

public:
	TArray<UEdGraphPin*> Pins;
	int32 NodePosX;
	int32 NodePosY;
	int32 NodeWidth;
	int32 NodeHeight;
	FString NodeComment;
	FGuid NodeGuid;
#if WITH_EDITORONLY_DATA
	uint8 bCanResizeNode : 1;
	uint8 bCommentBubblePinned : 1;
	uint8 bCommentBubbleVisible : 1;
	uint8 bCommentBubbleMakeVisible : 1;
	uint8 bCanRenameNode : 1;
#endif

	UEdGraphPin* FindPin(const FName PinName, const EEdGraphPinDirection Direction = EGPD_MAX) const;
	bool RemovePin(UEdGraphPin* Pin);
	void BreakAllNodeLinks(bool bAlwaysMarkDirty = true);
	UEdGraph* GetGraph() const;
	const UEdGraphSchema* GetSchema() const;
	virtual void AllocateDefaultPins();
	virtual void ReconstructNode();
	virtual void DestroyNode();
	virtual void PostPlacedNewNode();
	virtual FText GetNodeTitle(ENodeTitleType::Type TitleType) const;
	virtual FText GetTooltipText() const;
	// Not in the reference notes; check against the engine.
	virtual bool IsCompatibleWithGraph(const UEdGraph* TargetGraph) const;
	void CreateNewGuid();
	bool IsNodeEnabled() const;
	void SetEnabledState(ENodeEnabledState NewState, bool bUserAction = true);
};
