void main(){
	int i = 0;
	while(1){
		i = i + 1;
	}
}
