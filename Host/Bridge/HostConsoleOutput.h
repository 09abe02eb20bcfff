#pragma once

#include "Misc/OutputDevice.h"

// Prints log lines as the editor's output log shows them:
// "[2026.11.22-14.05.09:123][  0]LogZorvekMCPBridge: Display: text".
class FHostConsoleOutput : public FOutputDevice
{
public:
	void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override;
	void Flush() override;
	bool CanBeUsedOnAnyThread() const override { return true; }
	static FString FormatLine(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category);
};
