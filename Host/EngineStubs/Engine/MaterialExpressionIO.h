#pragma once

#include "CoreMinimal.h"

class UMaterialExpression;

struct FExpressionInput
{
	UMaterialExpression* Expression;
	int32 OutputIndex;
	FName InputName;
	int32 Mask;
	int32 MaskR;
	int32 MaskG;
	int32 MaskB;
	int32 MaskA;

	bool IsConnected() const;
	bool IsConstant() const;
	void Connect(int32 InOutputIndex, UMaterialExpression* InExpression);
};

struct FExpressionOutput
{
	FName OutputName;
	int32 Mask;
	int32 MaskR;
	int32 MaskG;
	int32 MaskB;
	int32 MaskA;
};
