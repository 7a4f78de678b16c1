#pragma once

// Everything that a host needs, in one include.

#include <Quillet/BitmapObject.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/Budget.h>
#include <Quillet/Char.h>
#include <Quillet/DecryptLevel.h>
#include <Quillet/DefaultErrorHandler.h>
#include <Quillet/Error.h>
#include <Quillet/ErrorForwarder.h>
#include <Quillet/ErrorHandler.h>
#include <Quillet/ErrorPlace.h>
#include <Quillet/Fill.h>
#include <Quillet/FontInfo.h>
#include <Quillet/GroupObject.h>
#include <Quillet/LayerObject.h>
#include <Quillet/Object.h>
#include <Quillet/Page.h>
#include <Quillet/PageBase.h>
#include <Quillet/PageClipArea.h>
#include <Quillet/PathObject.h>
#include <Quillet/PdfDocument.h>
#include <Quillet/Ref.h>
#include <Quillet/RefCacheable.h>
#include <Quillet/TextFidelity.h>
#include <Quillet/TextLineObject.h>
#include <Quillet/TreeWalk.h>
#include <Quillet/Version.h>

// What these take from hosts and give to them by pointer or reference.
#include <Kernel/InStream.h>
#include <Kernel/LocalisedString.h>
#include <Raster/DynamicBitmap.h>
#include <Story/Delta.h>
#include <Story/GlyphSink.h>
#include <Story/Story.h>
#include <Story/StyleSheet.h>
