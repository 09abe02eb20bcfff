#pragma once

#include "CoreMinimal.h"
#include "Widgets/SWindow.h"

class FTabManager : public TSharedFromThis<FTabManager>
{
public:
	virtual ~FTabManager();
};

// The application's tab manager; its root window is the editor's main window.
class FGlobalTabmanager : public FTabManager
{
public:
	static const TSharedRef<FGlobalTabmanager>& Get();
	TSharedPtr<SWindow> GetRootWindow() const;
};
