// SPDX-License-Identifier: MIT
// A plugin of qemu-user that prints how many instructions a program took, from its start to its
// end. QEMU's headers are in no Debian package: these are the documented declarations that it
// needs.
#include <inttypes.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

typedef uint64_t qemu_plugin_id_t;
typedef struct qemu_info_t qemu_info_t;
struct qemu_plugin_tb;
enum qemu_plugin_cb_flags { QEMU_PLUGIN_CB_NO_REGS };

typedef void (*translated_cb)(qemu_plugin_id_t id, struct qemu_plugin_tb *block);
typedef void (*executed_cb)(unsigned int cpu, void *data);
typedef void (*exit_cb)(qemu_plugin_id_t id, void *data);

size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb *block);
void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t id, translated_cb callback);
void qemu_plugin_register_vcpu_tb_exec_cb(struct qemu_plugin_tb *block, executed_cb callback,
                                          enum qemu_plugin_cb_flags flags, void *data);
void qemu_plugin_register_atexit_cb(qemu_plugin_id_t id, exit_cb callback, void *data);

#define EXPORT __attribute__((visibility("default")))

EXPORT int qemu_plugin_version = PLUGIN_API; // what QEMU asks for grows with its releases
EXPORT int qemu_plugin_install(qemu_plugin_id_t id, const qemu_info_t *info, int argc, char **argv);

static uint64_t instructions; // the programs that are counted have one thread

static void executed(unsigned int cpu, void *data)
{
    (void)cpu;
    instructions += (uintptr_t)data;
}

static void translated(qemu_plugin_id_t id, struct qemu_plugin_tb *block)
{
    (void)id;
    void *count = (void *)(uintptr_t)qemu_plugin_tb_n_insns(block);
    qemu_plugin_register_vcpu_tb_exec_cb(block, executed, QEMU_PLUGIN_CB_NO_REGS, count);
}

static void ended(qemu_plugin_id_t id, void *data)
{
    (void)id;
    (void)data;
    fprintf(stderr, "%" PRIu64 "\n", instructions);
}

int qemu_plugin_install(qemu_plugin_id_t id, const qemu_info_t *info, int argc, char **argv)
{
    (void)info;
    (void)argc;
    (void)argv;
    qemu_plugin_register_vcpu_tb_trans_cb(id, translated);
    qemu_plugin_register_atexit_cb(id, ended, NULL);
    return 0;
}
