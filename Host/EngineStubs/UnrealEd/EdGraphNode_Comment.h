#pragma once

#include "CoreMinimal.h"
#include "Containers/EnumAsByte.h"
#include "EdGraph/EdGraphNode.h"
#include "Math/Color.h"
#include "UObject/ObjectMacros.h"

// The editor build defines each module's export macro; nothing here is linked.
#ifndef UNREALED_API
#define UNREALED_API
#endif

namespace ECommentBoxMode
{
	enum Type : int
	{
		GroupMovement,
		NoGroupMovement
	};
}

// The reference notes give the set as an array of objects.
typedef TArray<UObject*> FCommentNodeSet;

UCLASS(MinimalAPI)
class UEdGraphNode_Comment : public UEdGraphNode
{
	GENERATED_BODY()

public:
	FLinearColor CommentColor;
	int32 FontSize;
	uint32 bCommentBubbleVisible_InDetailsPanel : 1;
	uint32 bColorCommentBubble : 1;
	TEnumAsByte<ECommentBoxMode::Type> MoveMode;
	int32 CommentDepth;

	UNREALED_API void SetBounds(const class FSlateRect& Rect);
	UNREALED_API const FCommentNodeSet& GetNodesUnderComment() const;
	UNREALED_API void AddNodeUnderComment(UObject* Object);
	UNREALED_API void ClearNodesUnderComment();
};
