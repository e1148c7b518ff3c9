// Bound to player 1, twelve pixels behind and above.
void main(){
	bindentity(getlocalvar("self"), getplayerproperty(0, "entity"), -12, 0, 20, 1, 0);
}
