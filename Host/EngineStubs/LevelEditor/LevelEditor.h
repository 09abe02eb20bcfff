#pragma once

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"

class SLevelViewport;

// The engine's other bases (IHasMenuExtensibility, IHasToolBarExtensibility) are left out.
class FLevelEditorModule : public IModuleInterface
{
public:
	// Null when no level editor is open (unattended runs, commandlets, start-up).
	virtual TSharedPtr<SLevelViewport> GetFirstActiveLevelViewport();
};
