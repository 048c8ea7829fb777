#include "platform/photo/Confinement.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace kintar::platform {

namespace {

#if defined(__x86_64__)
constexpr unsigned thisArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned thisArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned thisArchitecture = 0; // not known here: no filter
#endif

/// From here on the same architecture may number the same calls a second time.
constexpr unsigned secondNumbering = 0x40000000;

/// Calls that fail from now on as not permitted.
constexpr std::array refused {
    SYS_execve, SYS_execveat, SYS_ptrace, SYS_process_vm_readv, SYS_socket, SYS_connect, SYS_bind,
        SYS_listen, SYS_process_vm_writev, SYS_unlinkat, SYS_mkdirat, SYS_linkat, SYS_symlinkat,
        SYS_renameat2, SYS_fchmodat, SYS_fchownat, SYS_mknodat, SYS_mount, SYS_io_uring_setup,
        SYS_bpf, SYS_keyctl, SYS_perf_event_open, SYS_unshare, SYS_setns,
#if defined(__x86_64__)
        SYS_fork, SYS_vfork, SYS_unlink, SYS_rmdir, SYS_mkdir, SYS_rename, SYS_renameat, SYS_link,
        SYS_symlink, SYS_chmod, SYS_chown, SYS_creat, SYS_mknod, SYS_lchown,
#endif
};

/// A filter on the number of a system call: refused ones give EPERM, all others go through.
std::vector<sock_filter> callFilter() {
    constexpr auto load = static_cast<__u16>(BPF_LD | BPF_W | BPF_ABS);
    constexpr auto jumpIfEqual = static_cast<__u16>(BPF_JMP | BPF_JEQ | BPF_K);
    constexpr auto jumpIfAtLeast = static_cast<__u16>(BPF_JMP | BPF_JGE | BPF_K);
    constexpr auto give = static_cast<__u16>(BPF_RET | BPF_K);
    const sock_filter refuse{give, 0, 0, SECCOMP_RET_ERRNO | EPERM};
    std::vector<sock_filter> filter{
        {load, 0, 0, offsetof(seccomp_data, arch)},
        {jumpIfEqual, 1, 0, thisArchitecture},
        refuse, // calls of another architecture have other numbers
        {load, 0, 0, offsetof(seccomp_data, nr)},
        {jumpIfAtLeast, 0, 1, secondNumbering},
        refuse,
    };
    // Threads are needed for scaling, processes are not. The newer call hides its flags behind a
    // pointer: where it is said not to exist, the older one is made instead.
    constexpr auto jumpIfSet = static_cast<__u16>(BPF_JMP | BPF_JSET | BPF_K);
    constexpr auto flags = static_cast<__u32>(offsetof(seccomp_data, args));
    filter.insert(filter.end(), {
                                    {jumpIfEqual, 0, 1, SYS_clone3},
                                    {give, 0, 0, SECCOMP_RET_ERRNO | ENOSYS},
                                    {jumpIfEqual, 0, 4, SYS_clone},
                                    {load, 0, 0, flags},
                                    {jumpIfSet, 0, 1, CLONE_THREAD},
                                    {give, 0, 0, SECCOMP_RET_ALLOW},
                                    refuse,
                                });
    for (const long call : refused) {
        filter.push_back({jumpIfEqual, 0, 1, static_cast<__u32>(call)});
        filter.push_back(refuse);
    }
    filter.push_back({give, 0, 0, SECCOMP_RET_ALLOW});
    return filter;
}

void refuseCalls() {
    if constexpr (thisArchitecture != 0) {
        std::vector<sock_filter> filter = callFilter();
        const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0);
    }
}

void limit(decltype(RLIMIT_CORE) what, rlim_t value) {
    const rlimit both{value, value};
    ::setrlimit(what, &both);
}

} // namespace

void confineProcess(pid_t parent, std::size_t dataBytes) {
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    if (::getppid() != parent) {
        std::_Exit(0);
    }
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0); // no file can be written, whatever it was opened as
    if (dataBytes != 0) {
        limit(RLIMIT_DATA, dataBytes);
    }
    refuseCalls();
}

void limitProcessorTime(unsigned seconds) {
    // Processor time is counted for the life of a process.
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    rlimit time{};
    ::getrlimit(RLIMIT_CPU, &time);
    time.rlim_cur = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) + seconds;
    ::setrlimit(RLIMIT_CPU, &time);
}

} // namespace kintar::platform
