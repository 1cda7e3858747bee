#pragma once

/// The kinds of a journal's lines.
enum class LineKind { Error, Warning, Message, Service };
