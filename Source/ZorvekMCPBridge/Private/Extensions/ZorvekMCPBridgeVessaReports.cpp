#include "Extensions/ZorvekMCPBridgeVessaTypes.h"

namespace
{
	// One of each for the whole editor: the latest action's outcome.
	FString& VessaCurrentExtensionError()
	{
		static FString ErrorSlot;
		return ErrorSlot;
	}

	FString& VessaCurrentExtensionResults()
	{
		static FString ResultsSlot;
		return ResultsSlot;
	}
}

void ZorvekMCPBridgeVessaReports::ReportError(const FString& ErrorMessage)
{
	VessaCurrentExtensionError() = ErrorMessage;
}

void ZorvekMCPBridgeVessaReports::ReportResults(const FString& ResultsMessage)
{
	VessaCurrentExtensionResults() = ResultsMessage;
}

const FString& ZorvekMCPBridgeVessaReports::GetError()
{
	return VessaCurrentExtensionError();
}

const FString& ZorvekMCPBridgeVessaReports::GetResults()
{
	return VessaCurrentExtensionResults();
}

bool ZorvekMCPBridgeVessaReports::HasError()
{
	return !VessaCurrentExtensionError().IsEmpty();
}

bool ZorvekMCPBridgeVessaReports::HasResults()
{
	return !VessaCurrentExtensionResults().IsEmpty();
}

void ZorvekMCPBridgeVessaReports::ClearError()
{
	VessaCurrentExtensionError().Empty();
}

void ZorvekMCPBridgeVessaReports::ClearResults()
{
	VessaCurrentExtensionResults().Empty();
}
