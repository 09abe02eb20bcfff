#pragma once

#include "CoreMinimal.h"
#include "Engine/Engine.h"

class UEditorEngine : public UEngine
{
public:
	FWorldContext& GetEditorWorldContext(bool bEnsureIsGWorld = false);
	template <typename TSubsystemClass>
	TSubsystemClass* GetEditorSubsystem() const;
};
