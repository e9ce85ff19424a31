/// Lets file permissions count, whoever runs the tests.
#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace TestSupport {

/// As long as this lives, this thread has none of the superuser's privileges: a file without
/// permissions cannot be opened by root either. For other users nothing changes.
class WithoutPrivileges {
 public:
  WithoutPrivileges() {
    syscall(SYS_capget, &header, previous);
    __user_cap_data_struct reduced[] = {previous[0], previous[1]};
    for (__user_cap_data_struct& set : reduced)
      set.effective = 0;
    syscall(SYS_capset, &header, reduced);
  }
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
  ~WithoutPrivileges() { syscall(SYS_capset, &header, previous); }

 private:
  __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct previous[2] = {};
};

}  // namespace TestSupport
