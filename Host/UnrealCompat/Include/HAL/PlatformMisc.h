#pragma once

#include "Containers/UnrealString.h"

struct FPlatformMisc
{
	static FString GetEnvironmentVariable(const TCHAR* VariableName);
	static void SetEnvironmentVar(const TCHAR* VariableName, const TCHAR* Value);
};
