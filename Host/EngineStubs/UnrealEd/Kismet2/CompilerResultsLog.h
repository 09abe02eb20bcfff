#pragma once

#include "CoreMinimal.h"
#include "Logging/TokenizedMessage.h"
#include "Templates/SharedPointer.h"

class FCompilerResultsLog
{
public:
	TArray<TSharedRef<FTokenizedMessage>> Messages;
	int32 NumErrors;
	int32 NumWarnings;
	bool bSilentMode;
	bool bLogInfoOnly;
	bool bAnnotateMentionedNodes;
	bool bLogDetailedResults;

	FCompilerResultsLog(bool bIsCompatibleWithEvents = true);
	void SetSourcePath(const FString& InSourcePath);
	void Append(FCompilerResultsLog const& Other, bool bWriteToSystemLog = false);
};
