/*
 * serving_victim.c - a control process that knows nothing of the software accelerator. Each line of its input has it do
 * something and print a number:
 *
 *     attach      the code of an attachment
 *     fork        the exit status of a child, which attaches and exits with the code
 *     descend     the same of a child's child
 *     linger      the process id of a child that stays until it is killed
 */
#include "platform/kel_init.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

static int attach(void)
{
    kel_attach_info info;
    return (int)kel_init_attach(&info);
}

static int exit_status_of_child(int (*work)(void))
{
    int status = -1;
    const pid_t child = fork();
    if (child == 0)
        exit(work());
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

static int fork_and_attach(void)
{
    return exit_status_of_child(attach);
}

static int lingering_child(void)
{
    const pid_t child = fork();
    if (child == 0)
        for (;;)
            pause();
    return child;
}

int main(void)
{
    char line[20];
    while (fgets(line, sizeof line, stdin)) {
        if (strcmp(line, "attach\n") == 0)
            printf("%d\n", attach());
        else if (strcmp(line, "fork\n") == 0)
            printf("%d\n", fork_and_attach());
        else if (strcmp(line, "descend\n") == 0)
            printf("%d\n", exit_status_of_child(fork_and_attach));
        else
            printf("%d\n", lingering_child());
        fflush(stdout);
    }
    return 0;
}
