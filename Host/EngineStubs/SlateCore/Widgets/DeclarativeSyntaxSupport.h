// The declarative widget syntax: SNew / SAssignNew, the named-argument macros and the arguments
// every widget takes. The macros produce members in the widget's FArguments as the engine's do.
#pragma once

#include "CoreMinimal.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"

class SWidget;

namespace RequiredArgs
{
	struct T0RequiredArgs
	{
		T0RequiredArgs();
	};

	template <typename Arg0Type>
	struct T1RequiredArgs
	{
		T1RequiredArgs(Arg0Type&& InArg0);
	};

	T0RequiredArgs MakeRequiredArgs();
	template <typename Arg0Type>
	T1RequiredArgs<Arg0Type&&> MakeRequiredArgs(Arg0Type&& InArg0);
}

template <class WidgetType, typename RequiredArgsPayloadType>
struct TDecl
{
	TDecl(const ANSICHAR* InType, const ANSICHAR* InFile, int32 OnLine, RequiredArgsPayloadType&& InRequiredArgs);

	template <class ExposeAsWidgetType>
	TDecl&& Expose(TSharedPtr<ExposeAsWidgetType>& OutVarToInit) &&;
	template <class ExposeAsWidgetType>
	TDecl&& Expose(TSharedRef<ExposeAsWidgetType>& OutVarToInit) &&;

	TSharedRef<WidgetType> operator<<=(const typename WidgetType::FArguments& InArgs) &&;
};

template <typename WidgetType, typename RequiredArgsPayloadType>
TDecl<WidgetType, RequiredArgsPayloadType> MakeTDecl(const ANSICHAR* InType, const ANSICHAR* InFile, int32 OnLine, RequiredArgsPayloadType&& InRequiredArgs);

#define SNew(WidgetType, ...) \
	MakeTDecl<WidgetType>(#WidgetType, __FILE__, __LINE__, RequiredArgs::MakeRequiredArgs(__VA_ARGS__)) <<= typename WidgetType::FArguments()

#define SAssignNew(ExposeAs, WidgetType, ...) \
	MakeTDecl<WidgetType>(#WidgetType, __FILE__, __LINE__, RequiredArgs::MakeRequiredArgs(__VA_ARGS__)).Expose(ExposeAs) <<= typename WidgetType::FArguments()

struct FSlateBaseNamedArgs
{
	FSlateBaseNamedArgs();
};

template <typename InWidgetType>
struct TSlateBaseNamedArgs : public FSlateBaseNamedArgs
{
	typedef InWidgetType WidgetType;
	typedef typename WidgetType::FArguments WidgetArgsType;

	WidgetArgsType& ToolTipText(const TAttribute<FText>& InAttribute);
	WidgetArgsType& Visibility(const TAttribute<EVisibility>& InAttribute);
	WidgetArgsType& IsEnabled(const TAttribute<bool>& InAttribute);
	WidgetArgsType& Me();
};

#define SLATE_BEGIN_ARGS(InWidgetType) \
	public: \
	struct FArguments : public TSlateBaseNamedArgs<InWidgetType> \
	{ \
		typedef FArguments WidgetArgsType; \
		typedef InWidgetType WidgetType; \
		FORCENOINLINE FArguments()

#define SLATE_END_ARGS() \
	};

#define SLATE_ARGUMENT(ArgType, ArgName) \
		ArgType _##ArgName; \
		WidgetArgsType& ArgName(ArgType InArg) \
		{ \
			_##ArgName = InArg; \
			return *this; \
		}

#define SLATE_ATTRIBUTE(AttrType, AttrName) \
		TAttribute<AttrType> _##AttrName; \
		WidgetArgsType& AttrName(TAttribute<AttrType> InAttribute) \
		{ \
			_##AttrName = MoveTemp(InAttribute); \
			return *this; \
		}

#define SLATE_EVENT(DelegateName, EventName) \
		WidgetArgsType& EventName(const DelegateName& InDelegate) \
		{ \
			_##EventName = InDelegate; \
			return *this; \
		} \
		DelegateName _##EventName;

#define SLATE_DEFAULT_SLOT(DeclarationType, SlotName) \
		TSharedPtr<SWidget> _##SlotName; \
		DeclarationType& operator[](TSharedRef<SWidget> InChild) \
		{ \
			_##SlotName = InChild; \
			return *this; \
		}
