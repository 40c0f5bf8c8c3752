#pragma once

#include <QString>

/// The catalogue of all notices, questions and errors. It gives the text of message `id` (a MessageBox_Id) and fills
/// what MessageBox is laid out with; of a text in another language than Korean the lines are its own. "_" in a text is
/// a line break. `value` goes into the texts that take one: a count, an error code, a reason. An id that has no message
/// (the answers to questions, and ids outside 0..133) gives an empty text and leaves the five numbers as they are. Null
/// pointers are not taken. Any thread.
QString GetMessageBoxString(int id, int* box_type, int* error_type, int* str_type, int* align_type, int* px, int value);

/// The text for hardware error `code` of the recorder; empty, with the numbers left as they are, for a code that has no
/// text of its own.
QString GetHWErrorMessageStatus(int code, int* box_type, int* error_type, int* str_type, int* align_type, int* px);
