#pragma once

#include "CoreMinimal.h"
#include "EditorViewportClient.h"

// The client of a Level Editor viewport; the plug-in uses only what FEditorViewportClient offers.
class FLevelEditorViewportClient : public FEditorViewportClient
{
};
