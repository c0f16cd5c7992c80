// The one place where asio is compiled (ASIO_SEPARATE_COMPILATION).
#include <asio/impl/src.hpp>
